// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/CheckedCborReader.h"

bool CheckedCborReader::enterArray()
{
    return (type() == Type::Array && enter()) || fail("a list is missing");
}

bool CheckedCborReader::enterContainer()
{
    return enter() || fail("a list is damaged");
}

bool CheckedCborReader::leave()
{
    return CborReader::leave() || fail("a list is damaged");
}

bool CheckedCborReader::readText(QString &text)
{
    if (!CborReader::readText(text))
        return fail("a text is missing or damaged");
    if (text.isNull())
        text = QLatin1String("");
    return true;
}

bool CheckedCborReader::readBytes(QByteArray &bytes)
{
    if (!CborReader::readBytes(bytes))
        return fail("data is missing or damaged");
    if (bytes.isNull())
        bytes = "";
    return true;
}

bool CheckedCborReader::fail(const char *reason)
{
    if (errorString_.isNull()) // the first reason is the nearest to the cause
        errorString_ =
            QStringLiteral("%1 at byte %2").arg(QLatin1String(reason), QString::number(offset()));
    return false;
}

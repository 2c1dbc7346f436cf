#include "platform/archive/ArchiveInput.h"

bool ArchiveInput::enter()
{
    return (cbor.type() == CborReader::Type::Array && cbor.enter()) || fail("a list is missing");
}

bool ArchiveInput::leave()
{
    return cbor.leave() || fail("a list is damaged");
}

bool ArchiveInput::readText(QString &text)
{
    if (!cbor.readText(text))
        return fail("a text is missing or damaged");
    if (text.isNull())
        text = QLatin1String("");
    return true;
}

bool ArchiveInput::readBytes(QByteArray &bytes)
{
    if (!cbor.readBytes(bytes))
        return fail("data is missing or damaged");
    if (bytes.isNull())
        bytes = "";
    return true;
}

bool ArchiveInput::fail(const char *reason)
{
    if (errorString_.isNull()) // the first reason is the nearest to the cause
        errorString_ = QStringLiteral("%1 at byte %2")
                           .arg(QLatin1String(reason), QString::number(cbor.offset()));
    return false;
}

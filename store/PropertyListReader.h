// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QXmlStreamReader>

// Reads an XML property list, as in archives of version 1. Integers become 8-byte numbers, the
// width of the format; a real becomes its text, since the registry has no reals.
class PropertyListReader
{
public:
    // None unless the bytes are a valid property list in UTF-8 that is neither too large nor too
    // deep and declares nothing but its document type.
    static RegistryValue read(const QByteArray &xml);

private:
    explicit PropertyListReader(const QString &xml);
    RegistryValue readDocument();
    bool nextElement();
    RegistryValue readValue(int depth);
    RegistryValue readDictionary(int depth);
    RegistryValue readArray(int depth);
    RegistryValue readInteger();
    RegistryValue readReal();
    RegistryValue readData();
    RegistryValue readDate();
    RegistryValue readEmpty(const RegistryValue &value);
    QString readText();
    RegistryValue fail(const char *reason);

    QXmlStreamReader xml_;
};

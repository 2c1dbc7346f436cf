#pragma once

#include "model/RegistryValue.h"

#include <QXmlStreamReader>

// Reads a property list in XML, such as version 1 of the archive keeps an entry's properties in.
// Integers become numbers of 8 bytes, which is how wide the format means them; a real has no
// counterpart in the registry and becomes its text.
class PropertyListReader
{
public:
    // None when the bytes are no sound property list in UTF-8, or one that is too large, too deep
    // or declares more than its document type.
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

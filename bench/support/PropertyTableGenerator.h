#pragma once

#include "model/RegistryValue.h"

#include <QRandomGenerator>
#include <QStringList>

// Makes property tables like those of devices: nested dictionaries, arrays, sets and scalars of
// every type. Keys and recurrent texts share their storage; others differ from table to table.
class PropertyTableGenerator
{
public:
    explicit PropertyTableGenerator(quint32 seed);

    // A table whose tree has just so many nodes, itself counted.
    RegistryValue table(quint32 nodes);

private:
    CompactString key(const char *text);
    RegistryValue sharedText();
    RegistryValue ownText();
    RegistryValue number(int width);
    RegistryValue scalar(quint32 kind);
    RegistryValue dictionary(const char *keyStem, quint32 count);
    RegistryValue collection(quint32 kind);

    QRandomGenerator random_;
    QHash<QByteArray, CompactString> keys_;
    std::vector<RegistryValue> texts_;
};

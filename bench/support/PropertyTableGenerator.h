// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QRandomGenerator>
#include <QStringList>

// Makes property tables like those of devices: nested dictionaries, arrays, sets and scalars of
// every type. Keys and repeated texts share storage; others differ between tables.
class PropertyTableGenerator
{
public:
    explicit PropertyTableGenerator(quint32 seed);

    // A table whose tree has exactly this many nodes, including itself.
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

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

#include <QVarLengthArray>
#include <span>

// Finds properties by their keys in the tables of entries, in any thread and without property
// trees.
class PropertyLookup
{
public:
    using Values = QVarLengthArray<const RegistryValue *, 8>;

    // The table that the entry's properties are made from. The place is for one that must be made.
    static const RegistryValue &tableOf(const TavRegistryEntry &entry, RegistryValue &place);
    // The properties with these keys, one below the other: those nearest to the top, of which lists
    // may hold several. The contents of sets are no properties.
    static Values find(const RegistryValue &table, const QStringList &keys);

private:
    using Level = QVarLengthArray<const RegistryValue *, 32>;

    static RegistryValue tableOf(const TavRegistryProperty &node);
    static void findBelow(const RegistryValue &value, std::span<const QString> keys, Values &found);
};

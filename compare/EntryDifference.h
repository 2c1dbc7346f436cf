// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

// What happened to an entry between two moments.
enum class DifferenceKind : quint8 { Same, Changed, Moved, Renamed, Added, Removed };

// Which of an entry's facts differ.
enum class FactDifference : quint8 {
    Name = 1, // in the service plane, without the location
    Location = 2,
    Parent = 4,  // in the service plane
    Class = 8,   // the class or what it inherits
    Driver = 16, // the bundle
    State = 32,  // registered, matched, active
    Links = 64,  // parents in other planes
    Properties = 128,
};
Q_DECLARE_FLAGS(FactDifferences, FactDifference)
Q_DECLARE_OPERATORS_FOR_FLAGS(FactDifferences)

// A pair of entries that are the same thing, or one that is only in one of the stores.
struct EntryDifference
{
    TavRegistryEntry *before = nullptr; // null: added
    TavRegistryEntry *after = nullptr;  // null: removed
    DifferenceKind kind = DifferenceKind::Same;
    FactDifferences facts = {}; // that are not volatile, or all where these are shown
    bool isVolatile = false;    // differs in what always changes, whether shown or not

    TavRegistryEntry &entry() const { return after ? *after : *before; }
};

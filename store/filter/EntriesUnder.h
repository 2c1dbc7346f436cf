// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/EntryOrder.h"
#include "model/TavRegistryEntry.h"

// The entries that have an entry of a given name above them in some plane.
class EntriesUnder
{
public:
    // The planes are of these entries, all of which have numbers below the limit.
    EntriesUnder(const QString &name, std::span<const EntryRef> entries,
                 std::span<const EntryOrder> planes, std::size_t numberLimit);

    bool contains(const TavRegistryEntry &entry) const;

private:
    using Flags = std::vector<char>; // by number of the entry; threads set different ones

    static Flags named(const QString &name, std::span<const EntryRef> entries,
                       std::size_t numberLimit);
    void add(const EntryOrder &order, const Flags &named);

    Flags isUnder_;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/EntryOrder.h"

// The entries that have an entry of a given name above them in some plane.
class EntriesUnder
{
public:
    // All entries have numbers below the limit.
    EntriesUnder(const QString &name, std::span<const EntryOrder> planes, std::size_t numberLimit);

    bool contains(const TavRegistryEntry &entry) const;

private:
    void add(const EntryOrder &order, const QString &name);

    std::vector<bool> isUnder_; // by number of the entry
};

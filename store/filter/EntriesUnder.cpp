// SPDX-License-Identifier: Apache-2.0
#include "store/filter/EntriesUnder.h"

#include "model/TavRegistryEntry.h"
#include "store/filter/FilterFields.h"

EntriesUnder::EntriesUnder(const QString &name, std::span<const EntryOrder> planes,
                           std::size_t numberLimit)
    : isUnder_(numberLimit)
{
    for (const EntryOrder &order : planes)
        add(order, name);
}

bool EntriesUnder::contains(const TavRegistryEntry &entry) const
{
    return isUnder_[entry.number()];
}

// Backwards, an order has all parents before their children. Being under an entry in one plane must
// not spread through another.
void EntriesUnder::add(const EntryOrder &order, const QString &name)
{
    std::vector<bool> leads(order.size());
    for (std::size_t i = order.size(); i-- > 0;) {
        TavRegistryEntry &entry = order.entry(i);
        if (leads[i])
            isUnder_[entry.number()] = true;
        else if (!FilterFields::isNamed(entry, name))
            continue;
        for (const quint32 child : order.children(i))
            leads[child] = true;
    }
}

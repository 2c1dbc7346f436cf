// SPDX-License-Identifier: Apache-2.0
#include "store/filter/EntriesUnder.h"

#include "model/TavRegistryEntry.h"
#include "store/filter/FilterFields.h"

#include <QtConcurrentMap>

EntriesUnder::EntriesUnder(const QString &name, std::span<const EntryRef> entries,
                           std::span<const EntryOrder> planes, std::size_t numberLimit)
    : isUnder_(numberLimit)
{
    const Flags isNamed = named(name, entries, numberLimit);
    for (const EntryOrder &order : planes)
        add(order, isNamed);
}

EntriesUnder::Flags EntriesUnder::named(const QString &name, std::span<const EntryRef> entries,
                                        std::size_t numberLimit)
{
    Flags named(numberLimit);
    QtConcurrent::blockingMap(entries.begin(), entries.end(), [&](const EntryRef &entry) {
        named[entry->number()] = FilterFields::isNamed(*entry, name) ? 1 : 0;
    });
    return named;
}

bool EntriesUnder::contains(const TavRegistryEntry &entry) const
{
    return isUnder_[entry.number()] != 0;
}

// Backwards, an order has all parents before their children. Being under an entry in one plane must
// not spread through another.
void EntriesUnder::add(const EntryOrder &order, const Flags &named)
{
    std::vector<bool> leads(order.size());
    for (std::size_t i = order.size(); i-- > 0;) {
        TavRegistryEntry &entry = order.entry(i);
        if (leads[i])
            isUnder_[entry.number()] = 1;
        else if (!named[entry.number()])
            continue;
        for (const quint32 child : order.children(i))
            leads[child] = true;
    }
}

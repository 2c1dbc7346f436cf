// SPDX-License-Identifier: Apache-2.0
#include "model/EntryOrder.h"

#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"

namespace {
constexpr quint32 unvisited = ~quint32(0);
constexpr quint32 open = unvisited - 1; // the walk is still below the entry

std::size_t numberLimit(const TavRegistryEntry &entry)
{
    return entry.dataStore() ? entry.dataStore()->entryNumberLimit() : entry.number() + 1;
}
} // namespace

EntryOrder::EntryOrder(TavRegistryEntry &top, const QString &plane)
    : plane_(plane)
{
    struct Visit
    {
        TavRegistryEntry *entry;
        const EntryList::Entries *children;
        std::size_t nextChild;
    };
    std::vector<quint32> positions(numberLimit(top), unvisited);
    std::vector<Visit> visits;
    const auto enter = [&](TavRegistryEntry &entry) {
        positions[entry.number()] = open;
        visits.push_back({&entry, &entry.childrenInPlane(plane), 0});
    };
    enter(top);
    while (!visits.empty()) {
        auto &[entry, children, nextChild] = visits.back();
        if (nextChild < children->size()) {
            TavRegistryEntry *const child = (*children)[nextChild++];
            // Prefetch: the walk mostly waits for memory.
            if (nextChild < children->size())
                __builtin_prefetch(&(*children)[nextChild]->facts().childrenInPlanes);
            if (positions[child->number()] == unvisited)
                enter(*child);
            continue;
        }
        for (const TavRegistryEntry *child : *children) {
            const quint32 position = positions[child->number()];
            if (position != open)
                children_.push_back(position);
        }
        positions[entry->number()] = static_cast<quint32>(steps_.size());
        steps_.push_back({entry, children_.size()});
        visits.pop_back();
    }
}

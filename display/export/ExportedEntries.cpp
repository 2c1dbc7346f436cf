// SPDX-License-Identifier: Apache-2.0
#include "display/export/ExportedEntries.h"

#include "store/redaction/RedactedStore.h"

ExportedEntries ExportedEntries::single(const TavDataStore &store, const QString &plane,
                                        const TavRegistryEntry &entry)
{
    ExportedEntries entries(store, plane);
    entries.items_.push_back({&entry, 0, false});
    return entries;
}

// What is below an entry on several paths is listed once, so that the time is linear.
ExportedEntries ExportedEntries::subtree(const TavDataStore &store, const QString &plane,
                                         const TavRegistryEntry &top)
{
    ExportedEntries entries(store, plane);
    QSet<const TavRegistryEntry *> listed;
    std::vector<Item> pending{{&top, 0, false}};
    while (!pending.empty()) {
        Item item = pending.back();
        pending.pop_back();
        const auto &children = item.entry->childrenInPlane(plane);
        item.isRepeated = listed.contains(item.entry);
        listed.insert(item.entry);
        entries.items_.push_back(item);
        if (item.isRepeated)
            continue;
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            pending.push_back({*child, item.depth + 1, false});
    }
    return entries;
}

ExportedEntries ExportedEntries::found(const TavDataStore &store, const QString &plane,
                                       const EntrySet &found)
{
    ExportedEntries entries(store, plane);
    EntrySet others = found;
    const auto add = [&](const TavRegistryEntry *entry) {
        if (others.remove(const_cast<TavRegistryEntry *>(entry)))
            entries.items_.push_back({entry, 0, false});
    };
    if (const TavRegistryEntry *const root = store.registryRoot()) {
        for (const Item &item : subtree(store, plane, *root).items_)
            add(item.entry);
    }
    for (const EntryRef &entry : store.registryEntries())
        add(entry.get());
    return entries;
}

ExportedEntries ExportedEntries::in(const RedactedStore &copy) const
{
    ExportedEntries entries(copy.store(), plane_);
    for (Item item : items_) {
        item.entry = copy.counterpart(*item.entry);
        if (item.entry)
            entries.items_.push_back(item);
    }
    return entries;
}

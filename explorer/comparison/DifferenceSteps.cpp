// SPDX-License-Identifier: Apache-2.0
#include "explorer/comparison/DifferenceSteps.h"

// All entries of the plane, each once, from the root down.
std::vector<TavRegistryEntry *> DifferenceSteps::inOrder(const QString &plane) const
{
    const TavDataStore &store = *comparison_.store();
    std::vector<TavRegistryEntry *> entries;
    std::vector<bool> isListed(store.entryNumberLimit(), false);
    std::vector<TavRegistryEntry *> pending;
    if (TavRegistryEntry *const root = store.registryRoot())
        pending.push_back(root);
    while (!pending.empty()) {
        TavRegistryEntry *const entry = pending.back();
        pending.pop_back();
        if (isListed[entry->number()])
            continue;
        isListed[entry->number()] = true;
        entries.push_back(entry);
        const auto &children = entry->childrenInPlane(plane);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return entries;
}

DifferenceSteps::Path DifferenceSteps::step(const TavRegistryEntry *from, const QString &plane,
                                            bool isForward) const
{
    std::vector<TavRegistryEntry *> entries = inOrder(plane);
    if (!isForward)
        std::reverse(entries.begin(), entries.end());
    auto start = std::find(entries.begin(), entries.end(), from);
    start = start == entries.end() ? entries.begin() : start + 1;
    const auto found = std::find_if(start, entries.end(), [this](const TavRegistryEntry *entry) {
        return comparison_.differenceOf(*entry).kind != DifferenceKind::Same;
    });
    return found == entries.end() ? std::nullopt : (*found)->entryPathInPlane(plane, 0);
}

DifferenceSteps::Path DifferenceSteps::next(const TavRegistryEntry *from,
                                            const QString &plane) const
{
    return step(from, plane, true);
}

DifferenceSteps::Path DifferenceSteps::previous(const TavRegistryEntry *from,
                                                const QString &plane) const
{
    return step(from, plane, false);
}

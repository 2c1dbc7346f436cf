// SPDX-License-Identifier: Apache-2.0
#include "display/views/ExpandedItems.h"

#include "display/PropertyCounterparts.h"

bool ExpandedItems::contains(const TavRegistryProperty &item) const
{
    const auto found = items_.constFind(&item);
    return found != items_.constEnd() && !found->expired();
}

void ExpandedItems::insert(TavRegistryProperty &item)
{
    items_.insert(&item, item.ref());
}

void ExpandedItems::removeTerminatedItems()
{
    items_.removeIf([](const auto &item) {
        const PropertyRef held = item.value().lock();
        return !held || held->registryState() == RegistryStateTerminated;
    });
}

void ExpandedItems::carryOver(TavRegistryProperty &older, TavRegistryProperty &newer)
{
    removeExpired();
    std::vector<std::pair<TavRegistryProperty *, TavRegistryProperty *>> pending{{&older, &newer}};
    while (!pending.empty()) {
        const auto [oldParent, newParent] = pending.back();
        pending.pop_back();
        const auto positions = PropertyCounterparts::positionsOfChildren(*oldParent, *newParent);
        for (qsizetype i = 0; i < oldParent->numberOfChildren(); ++i) {
            const qsizetype position = positions[static_cast<std::size_t>(i)];
            TavRegistryProperty *const oldChild = oldParent->childAtIndex(i);
            if (position < 0 || !oldChild->isCollection())
                continue;
            TavRegistryProperty *const newChild = newParent->childAtIndex(position);
            if (!newChild->isCollection())
                continue;
            if (contains(*oldChild))
                insert(*newChild);
            pending.emplace_back(oldChild, newChild);
        }
    }
}

void ExpandedItems::removeExpired()
{
    items_.removeIf([](const auto &item) { return item.value().expired(); });
}

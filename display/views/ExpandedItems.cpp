#include "display/views/ExpandedItems.h"

namespace {
// The collection at the same place as one in an older tree; null when there is none.
TavRegistryProperty *counterpart(const TavRegistryProperty &older, qsizetype position,
                                 const TavRegistryProperty &newParent)
{
    TavRegistryProperty *const newer =
        position < newParent.numberOfChildren() ? newParent.childAtIndex(position) : nullptr;
    const bool isKeyed = newParent.valueType() == TavRegistryProperty::Type::Dictionary;
    if (newer && (!isKeyed || newer->name() == older.name()))
        return newer;
    return isKeyed ? newParent.childWithName(older.name()) : nullptr;
}
} // namespace

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
        for (qsizetype i = 0; i < oldParent->numberOfChildren(); ++i) {
            TavRegistryProperty *const oldChild = oldParent->childAtIndex(i);
            if (!oldChild->isCollection())
                continue;
            TavRegistryProperty *const newChild = counterpart(*oldChild, i, *newParent);
            if (!newChild || !newChild->isCollection())
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

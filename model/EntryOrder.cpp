#include "model/EntryOrder.h"

#include "model/TavRegistryEntry.h"

namespace {
constexpr quint32 unplaced = ~quint32(0); // of an entry below which the walk still is

// Numbers walks, so that entries know in which they have been visited.
quint32 nextWalk()
{
    static quint32 last = 0;
    return ++last;
}
} // namespace

EntryOrder::EntryOrder(TavRegistryEntry &top, const QString &plane)
    : plane_(plane)
{
    struct Open
    {
        TavRegistryEntry *entry;
        const EntryList::Entries *children;
        std::size_t nextChild;
    };
    const quint32 walk = nextWalk();
    std::vector<Open> open;
    const auto enter = [&](TavRegistryEntry &entry) {
        entry.visitedWalk_ = walk;
        entry.positionInWalk_ = unplaced;
        open.push_back({&entry, &entry.childrenInPlane(plane), 0});
    };
    enter(top);
    while (!open.empty()) {
        auto &[entry, children, nextChild] = open.back();
        if (nextChild < children->size()) {
            TavRegistryEntry *const child = (*children)[nextChild++];
            // The walk waits for memory more than for anything else.
            if (nextChild < children->size())
                __builtin_prefetch(&(*children)[nextChild]->childrenInPlanes_);
            if (child->visitedWalk_ != walk)
                enter(*child);
            continue;
        }
        for (const TavRegistryEntry *child : *children) {
            if (child->positionInWalk_ != unplaced)
                children_.push_back(child->positionInWalk_);
        }
        entry->positionInWalk_ = static_cast<quint32>(steps_.size());
        steps_.push_back({entry, children_.size()});
        open.pop_back();
    }
}

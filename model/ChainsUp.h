#pragma once

#include "model/TavRegistryEntryPath.h"

// The chains of parents from an entry up to a top. A few devices stacked on two others each have
// more chains than there is memory, so that all walks over them have an end.
namespace ChainsUp {
using Chain = std::vector<const TavRegistryEntry *>; // from the entry upwards

TavRegistryEntryPath pathDown(const Chain &chain, const QString &plane);

// No machine comes near this many steps of one entry's chains.
constexpr std::size_t mostSteps = 4'000'000;

// Calls action for every chain in the plane that ends at a top, in the order of the parents at each
// step, leaving out the parents that a chain may not climb to. From the first chain on it goes as
// far as the given steps, before as far as the most. Returns whether that was all. Entries re-read
// one by one can disagree about who is above whom, so a chain that comes back to itself is left.
template<class IsTop, class MayClimb, class Action>
bool forEach(const TavRegistryEntry &entry, const QString &plane, std::size_t steps, IsTop isTop,
             MayClimb mayClimb, Action action)
{
    struct Step
    {
        const EntryList::Entries &parents;
        std::size_t next;
    };
    Chain chain{&entry};
    QSet<const TavRegistryEntry *> onChain{&entry};
    std::vector<Step> way;
    std::size_t stepsTaken = 0;
    std::size_t stepsAllowed = mostSteps;
    const auto enter = [&] {
        const bool top = isTop(*chain.back());
        stepsTaken += top ? chain.size() : 1;
        if (top) {
            stepsAllowed = steps;
            action(chain);
        }
        static const EntryList::Entries none;
        way.push_back({top ? none : chain.back()->parentsInPlane(plane), 0});
    };
    enter();
    while (!way.empty() && stepsTaken < stepsAllowed) {
        Step &step = way.back();
        if (step.next == step.parents.size()) {
            way.pop_back();
            onChain.remove(chain.back());
            chain.pop_back();
            continue;
        }
        const TavRegistryEntry *const parent = step.parents[step.next++];
        if (onChain.contains(parent) || !mayClimb(chain, *parent))
            continue;
        onChain.insert(parent);
        chain.push_back(parent);
        enter();
    }
    return way.empty();
}
} // namespace ChainsUp

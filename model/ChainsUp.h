// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntryPath.h"

// The chains of parents from an entry up to a top. A few devices stacked on two others each have
// more chains than fit in memory, so every walk over them is limited.
namespace ChainsUp {
using Chain = std::vector<const TavRegistryEntry *>; // from the entry upwards

TavRegistryEntryPath pathDown(const Chain &chain, const QString &plane);

// Far more steps than the chains of one entry take on any real machine.
constexpr std::size_t maxSteps = 4'000'000;

// Calls action for every chain in the plane that ends at a top, in the order of the parents at each
// step, skipping parents that mayClimb refuses. Stops after the given steps, or after maxSteps
// while no chain has been found. Returns whether the walk was complete. Entries reread one by one
// can disagree about who is above whom, so a chain that returns to itself is dropped.
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
    std::size_t stepsAllowed = maxSteps;
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

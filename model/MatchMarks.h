// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/EntryOrder.h"
#include "model/TavRegistryEntry.h"

// Stores in every entry of the order whether it matches and whether any below it does; returns the
// latter for the top.
template<class Matches>
bool markMatches(const EntryOrder &order, Matches matches)
{
    std::vector<bool> leadsToMatch(order.size());
    bool hasMatchBelow = false;
    for (std::size_t i = 0; i < order.size(); ++i) {
        constexpr std::size_t ahead = 8;
        if (i + ahead < order.size())
            __builtin_prefetch(&order.entry(i + ahead), 1);
        TavRegistryEntry &entry = order.entry(i);
        const std::span children = order.children(i);
        hasMatchBelow = std::any_of(children.begin(), children.end(),
                                    [&](quint32 child) { return leadsToMatch[child]; });
        if (hasMatchBelow)
            entry.setDescendantMatchesLastQuery(true, order.plane());
        entry.setMatchesLastQuery(matches(entry));
        leadsToMatch[i] = hasMatchBelow || entry.matchesLastQuery();
    }
    return hasMatchBelow; // the top comes last
}

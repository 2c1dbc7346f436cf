// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntryPath.h"

#include <deque>

// The selections that the user has visited, and the current place among them.
class SelectionHistory
{
public:
    static constexpr std::size_t maxVisits = 200;

    // The selection changed, but not by going back or forward: forgets what was ahead.
    void visit(const TavRegistryEntryPath &path);
    // Drops the paths with an entry that has left its store, and then equal neighbours.
    void forgetWhatIsGone();
    bool canGoBack() const { return place_ > 0; }
    bool canGoForward() const { return place_ + 1 < visited_.size(); }
    // Moves and returns the new place; only where that is possible.
    const TavRegistryEntryPath &goBack() { return visited_[--place_]; }
    const TavRegistryEntryPath &goForward() { return visited_[++place_]; }

private:
    std::deque<TavRegistryEntryPath> visited_;
    std::size_t place_ = 0;
};

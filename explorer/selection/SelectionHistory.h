#pragma once

#include "model/TavRegistryEntryPath.h"

#include <deque>

// The selections that the user has been to, with a place among them.
class SelectionHistory
{
public:
    static constexpr std::size_t most = 200;

    // The selection has changed other than by going back or forward: what was ahead is forgotten.
    void visit(const TavRegistryEntryPath &path);
    // Drops the paths with an entry that has left its store. Of equal neighbours, one is left.
    void forgetWhatIsGone();
    bool canGoBack() const { return place_ > 0; }
    bool canGoForward() const { return place_ + 1 < visited_.size(); }
    // Moves, and answers where to; only where that is possible.
    const TavRegistryEntryPath &goBack() { return visited_[--place_]; }
    const TavRegistryEntryPath &goForward() { return visited_[++place_]; }

private:
    std::deque<TavRegistryEntryPath> visited_;
    std::size_t place_ = 0;
};

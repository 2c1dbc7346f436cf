// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/SelectionHistory.h"

#include <algorithm>

void SelectionHistory::visit(const TavRegistryEntryPath &path)
{
    if (!visited_.empty()) {
        if (visited_[place_] == path)
            return;
        visited_.resize(place_ + 1, path);
    }
    visited_.push_back(path);
    if (visited_.size() > maxVisits)
        visited_.pop_front();
    place_ = visited_.size() - 1;
}

void SelectionHistory::forgetWhatIsGone()
{
    const auto isGone = [](const TavRegistryEntryPath &path) {
        const auto &entries = path.registryEntries();
        return std::any_of(entries.begin(), entries.end(),
                           [](const EntryRef &entry) { return !entry->dataStore(); });
    };
    // The place moves to the last path before it that is kept.
    std::deque<TavRegistryEntryPath> kept;
    std::size_t place = 0;
    for (std::size_t i = 0; i < visited_.size(); ++i) {
        if (!isGone(visited_[i]) && (kept.empty() || !(kept.back() == visited_[i])))
            kept.push_back(visited_[i]);
        if (i == place_ && !kept.empty())
            place = kept.size() - 1;
    }
    visited_ = std::move(kept);
    place_ = place;
}

#include "explorer/SelectionHistory.h"

#include <algorithm>

void SelectionHistory::visit(const TavRegistryEntryPath &path)
{
    if (!visited_.empty()) {
        if (visited_[place_] == path)
            return;
        visited_.resize(place_ + 1, path);
    }
    visited_.push_back(path);
    if (visited_.size() > most)
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
    // The place moves to the last of those kept up to it.
    const auto end =
        visited_.begin() + static_cast<std::ptrdiff_t>(std::min(place_ + 1, visited_.size()));
    const auto keptBefore =
        static_cast<std::size_t>(std::count_if(visited_.begin(), end, std::not_fn(isGone)));
    std::erase_if(visited_, isGone);
    place_ = keptBefore > 0 ? keptBefore - 1 : 0;
}

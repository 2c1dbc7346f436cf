#include "explorer/SelectionHistory.h"

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

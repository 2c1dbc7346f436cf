// SPDX-License-Identifier: Apache-2.0
#include "display/views/PropertyPlaces.h"

#include <algorithm>

namespace {
constexpr std::size_t maxKept = 32; // each keeps a whole tree
}

void PropertyPlaces::keep(const Place &place)
{
    std::erase_if(places_, [](const Kept &kept) { return kept.entry.expired(); });
    const std::shared_ptr<TavRegistryEntry> entry = place.root->registryEntry();
    if (!entry)
        return;
    if (places_.size() == maxKept)
        places_.erase(places_.begin());
    places_.push_back({entry, place});
}

std::optional<PropertyPlaces::Place> PropertyPlaces::take(const PropertyRef &root)
{
    const std::shared_ptr<TavRegistryEntry> entry = root ? root->registryEntry() : nullptr;
    const auto found = std::find_if(places_.begin(), places_.end(), [&](const Kept &kept) {
        return entry && kept.entry.lock() == entry;
    });
    if (found == places_.end())
        return std::nullopt;
    const Place place = std::move(found->place);
    places_.erase(found);
    return place;
}

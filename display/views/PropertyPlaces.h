// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

#include <optional>

// The user's place in the property trees of recently shown entries.
class PropertyPlaces
{
public:
    struct Place
    {
        PropertyRef root;                             // of the older tree
        const TavRegistryProperty *current = nullptr; // in that tree; null: none
        int column = 0;
        bool isSelected = false;
        int scroll = 0;
    };

    void keep(const Place &place);
    // The place in the entry's tree, even if it has been reread.
    std::optional<Place> take(const PropertyRef &root);

private:
    struct Kept
    {
        std::weak_ptr<TavRegistryEntry> entry;
        Place place;
    };
    std::vector<Kept> places_; // most recent last
};

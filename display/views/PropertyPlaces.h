#pragma once

#include "model/TavRegistryProperty.h"

#include <optional>

// Where the user was in the property trees of the entries that were shown lately.
class PropertyPlaces
{
public:
    struct Place
    {
        PropertyRef root;                             // of the tree as it was
        const TavRegistryProperty *current = nullptr; // in it; null: none
        int column = 0;
        bool isSelected = false;
        int scroll = 0;
    };

    void keep(const Place &place);
    // The place in the entry's tree, which may have been reread since.
    std::optional<Place> take(const PropertyRef &root);

private:
    struct Kept
    {
        std::weak_ptr<TavRegistryEntry> entry;
        Place place;
    };
    std::vector<Kept> places_; // the latest last
};

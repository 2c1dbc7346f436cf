#pragma once

#include "model/TavRegistryProperty.h"

// What a properties view needs of the window that it is in.
class PropertiesViewController
{
public:
    virtual ~PropertiesViewController() = default;
    virtual const PropertyRef &rootPropertyItem() const = 0; // null when nothing is selected
    virtual void propertiesViewSelectionChanged() = 0;
};

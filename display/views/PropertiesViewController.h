#pragma once

#include "model/TavRegistryProperty.h"

// What a properties view needs of the window that it is in.
class PropertiesViewController
{
public:
    // Of an attribute that is read only when the user asks for it.
    enum class Reading : quint8 { NotOffered, Offered, UnderWay };

    virtual ~PropertiesViewController() = default;
    virtual const PropertyRef &rootPropertyItem() const = 0; // null when nothing is selected
    virtual void propertiesViewSelectionChanged() = 0;
    // Of the selected entry, by the name in "DxUnreadAttributes".
    virtual Reading readingOfAttribute(const QString & /*attribute*/) const
    {
        return Reading::NotOffered;
    }
    virtual void readAttribute(const QString & /*attribute*/) {}
};

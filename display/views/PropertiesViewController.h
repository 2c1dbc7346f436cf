// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

#include <optional>

struct PlotLine;

// A value that changed while it was shown.
struct ValueChange
{
    static constexpr int tinted = 2000; // milliseconds

    qint64 time = 0; // in milliseconds since 1970
    QString was;
};

// What a properties view needs from its window.
class PropertiesViewController
{
public:
    // Whether and how an attribute that is read only on request can be read.
    enum class Reading : quint8 { NotOffered, Offered, UnderWay };

    // Whether the value can be plotted over time, or is.
    enum class Plotting : quint8 { NotOffered, Offered, NoRoom, Plotted };

    virtual ~PropertiesViewController() = default;
    virtual const PropertyRef &rootPropertyItem() const = 0; // null: no selection
    virtual void propertiesViewSelectionChanged() = 0;
    // For the selected entry, by the name in "DxUnreadAttributes".
    virtual Reading readingOfAttribute(const QString & /*attribute*/) const
    {
        return Reading::NotOffered;
    }
    virtual void readAttribute(const QString & /*attribute*/) {}
    // Whether the value is a link to another entry.
    virtual bool isLink(const TavRegistryProperty & /*item*/) const { return false; }
    // When and from what the value changed; none: it did not, as far as is known.
    virtual std::optional<ValueChange> changeOf(const TavRegistryProperty & /*item*/) const
    {
        return std::nullopt;
    }
    virtual Plotting plotting(const TavRegistryProperty & /*item*/) const
    {
        return Plotting::NotOffered;
    }
    virtual void togglePlot(const TavRegistryProperty & /*item*/) {}
    // What is plotted of the value, to be shown beside it; null: nothing.
    virtual const PlotLine *sparklineOf(const TavRegistryProperty & /*item*/) const
    {
        return nullptr;
    }
    // Whether the tree is compared with an older one, whose values are shown, too.
    virtual bool comparesValues() const { return false; }
    // The counterpart of a node there; null: it is new.
    virtual const TavRegistryProperty *olderOf(const TavRegistryProperty & /*item*/) const
    {
        return nullptr;
    }
    // New, terminated or changed, as far as the comparison shows that.
    virtual RegistryState differenceState(const TavRegistryProperty & /*item*/) const
    {
        return RegistryStateUnchanged;
    }
    virtual void followLink(const TavRegistryProperty & /*item*/, bool /*inNewWindow*/) {}
};

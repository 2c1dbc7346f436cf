// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/EntryTextAttributes.h"
#include "model/TavRegistryEntry.h"

#include <QCoreApplication>
#include <QVariant>
#include <optional>

class ComparisonStore;
class TavDataStore;

// What the tree, the columns and the results may ask of the window that shows them.
class ExplorerContext
{
    Q_DECLARE_TR_FUNCTIONS(ExplorerContext)
public:
    virtual TavDataStore *dataStore() const = 0;
    virtual const QString &registryPlane() const = 0;
    virtual bool showNumPaths() const = 0;
    virtual bool showsDeviceNames() const = 0;
    virtual bool showsIcons() const = 0;
    virtual FindState findStateForRegistryEntry(const TavRegistryEntry &entry) const = 0;
    virtual bool isFiltering() const = 0; // false: everything passes the filter
    virtual bool passesFilter(const TavRegistryEntry &entry) const = 0;
    virtual bool hidesEverything() const = 0; // a search that filters has found nothing
    // How long ago the entry appeared or changed, in seconds; none: not recently, or it is not
    // shown.
    virtual std::optional<int> secondsSinceChange(const TavRegistryEntry & /*entry*/) const
    {
        return std::nullopt;
    }
    // How bad what looks wrong is, at the entry and below it.
    struct FindingSigns
    {
        std::optional<Severity> own;
        std::optional<Severity> below;
    };
    virtual FindingSigns findingSigns(const TavRegistryEntry & /*entry*/) const { return {}; }
    virtual QStringList findingTitles(const TavRegistryEntry & /*entry*/) const { return {}; }
    // What the window compares; null: it shows a registry.
    virtual const ComparisonStore *comparison() const { return nullptr; }

    EntryList::Entries filterRegistryEntries(const EntryList::Entries &entries) const;
    QString toolTipForRegistryEntry(const TavRegistryEntry &entry) const;
    // What is wrong with an entry; null for most.
    QString warningForEntry(const TavRegistryEntry &entry) const;
    // The icon before an entry's name: a warning, or else its kind with the sign of what looks
    // wrong; none where icons and signs are off.
    QVariant markForEntry(const TavRegistryEntry &entry) const;
    // The device's name, behind the entry's; null where there is none or device names are off.
    QVariant detailForEntry(const TavRegistryEntry &entry) const;
    // The colour of an entry's name; invalid for the view's own.
    QVariant colorForEntry(const TavRegistryEntry &entry,
                           const EntryTextAttributes &attributes) const;
    // What a screen reader says of a row.
    QString accessibleNameForEntry(const TavRegistryEntry &entry, const QString &name) const;

protected:
    ~ExplorerContext() = default;

private:
    QStringList detailsOf(const TavRegistryEntry &entry) const;  // in words
    QString differenceText(const TavRegistryEntry &entry) const; // null: no comparison, or the same
    QString differencesBelowText(const TavRegistryEntry &entry) const; // null: none
    QString findingsText(const TavRegistryEntry &entry) const;         // null: none
};

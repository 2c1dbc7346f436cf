// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

class RedactedStore;
class TavDataStore;

// The entries that an export writes, in their order in a plane. Valid while the store does not
// change.
class ExportedEntries
{
public:
    struct Item
    {
        const TavRegistryEntry *entry;
        quint32 depth;   // in the outline
        bool isRepeated; // it is on another path, too, and was listed there with all below it
    };
    using Reach = std::function<void(double)>; // gets the part that is done, from 0 to 1

    static ExportedEntries single(const TavDataStore &store, const QString &plane,
                                  const TavRegistryEntry &entry);
    static ExportedEntries subtree(const TavDataStore &store, const QString &plane,
                                   const TavRegistryEntry &top);
    // Without an outline; those of other planes come last.
    static ExportedEntries found(const TavDataStore &store, const QString &plane,
                                 const EntrySet &found);

    ExportedEntries in(const RedactedStore &copy) const; // the same entries there

    const TavDataStore &store() const { return *store_; }
    const QString &plane() const { return plane_; }
    const std::vector<Item> &items() const { return items_; }
    template<class Action>
    void forEach(const Reach &reach, Action action) const
    {
        constexpr std::size_t betweenReports = 64;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (i % betweenReports == 0)
                reach(static_cast<double>(i) / static_cast<double>(items_.size()));
            action(items_[i]);
        }
    }

private:
    ExportedEntries(const TavDataStore &store, const QString &plane)
        : store_(&store)
        , plane_(plane)
    {}

    const TavDataStore *store_;
    QString plane_;
    std::vector<Item> items_;
};

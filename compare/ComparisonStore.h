// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/SnapshotComparison.h"
#include "store/StoreBuilder.h"

// A comparison as one data store, so that it can be shown like a registry: the entries of after,
// and those that were removed where they were. Added entries have the state new, removed ones
// terminated, all others unchanged. Entries stay the same objects from one comparison to the next
// as long as what they stand for stays. Main thread.
class ComparisonStore
{
public:
    // The comparison and the stores that it is of.
    struct Compared
    {
        Compared(std::shared_ptr<const TavDataStore> older,
                 std::shared_ptr<const TavDataStore> newer, SnapshotComparison::Options options,
                 const SnapshotComparison::Reach &reach)
            : before(std::move(older))
            , after(std::move(newer))
            , comparison(*before, *after, std::move(options), reach)
        {}

        std::shared_ptr<const TavDataStore> before;
        std::shared_ptr<const TavDataStore> after;
        SnapshotComparison comparison;
    };

    explicit ComparisonStore(std::shared_ptr<const Compared> compared);

    const std::shared_ptr<TavDataStore> &store() const { return builder_.store(); }
    const SnapshotComparison &comparison() const { return compared_->comparison; }
    const std::shared_ptr<const Compared> &compared() const { return compared_; }
    // Takes over a newer comparison.
    void show(std::shared_ptr<const Compared> compared);

    // What an entry of the store stands for; nothing for one that has left it.
    const EntryDifference &differenceOf(const TavRegistryEntry &entry) const;
    // The entry of the store that stands for a difference.
    const EntryRef &entryOf(const EntryDifference &difference) const;
    // Its property tree with what changed noted in it; the nodes belong to this entry.
    PropertyDifferences propertyDifferences(const TavRegistryEntry &entry,
                                            const PropertyClass &nodeClass) const;
    // How many differences are below an entry in a plane, without its own.
    quint64 differencesBelow(const TavRegistryEntry &entry, const QString &plane) const;

private:
    using Entries = std::vector<EntryRef>; // by the place of the difference
    using Counts = std::vector<quint64>;   // by the number of the entry

    void makeEntries();
    void fill(std::size_t place, quint64 tag);
    void link(std::size_t place);
    TavRegistryEntry *standIn(const TavRegistryEntry &original) const; // null: it was gone before
    PlaneMap<EntryList> parents(const EntryDifference &difference) const;
    PlaneMap<EntryList> children(const EntryDifference &difference) const;
    Counts countBelow(const QString &plane) const;

    StoreBuilder builder_;
    std::shared_ptr<const Compared> compared_;
    Entries entries_;
    std::vector<quint32> places_;          // of the differences, by the number of the entry
    mutable QHash<QString, Counts> below_; // by plane, made on demand
};

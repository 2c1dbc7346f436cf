// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/EntryDifference.h"
#include "compare/EntryPairing.h"
#include "compare/PropertyDifferences.h"

class TavDataStore;
class VolatileAttributes;

// What differs between two states of a registry, or between two registries. Neither store may
// change while this is used. Any thread.
class SnapshotComparison
{
public:
    struct Options
    {
        bool showsVolatile = false;   // counters and the like count as differences
        QStringList ignoredKeys = {}; // keys of properties that the user does not want to see
    };
    struct Counts
    {
        quint64 added = 0;
        quint64 removed = 0;
        quint64 moved = 0;
        quint64 renamed = 0;
        quint64 changed = 0;
        quint64 same = 0;

        quint64 differences() const { return added + removed + moved + renamed + changed; }
    };
    // A fact in the words of before and after.
    struct FactChange
    {
        FactDifference fact;
        QString before; // null: none
        QString after;
    };
    using Reach = std::function<void(double)>; // gets the part that is done, from 0 to 1

    SnapshotComparison(const TavDataStore &before, const TavDataStore &after, Options options,
                       const Reach &reach);

    const TavDataStore &before() const { return before_; }
    const TavDataStore &after() const { return after_; }
    const Options &options() const { return options_; }
    const Counts &counts() const { return counts_; }

    // All pairs and singles, in the order of the service plane, then of the other planes; what was
    // removed comes where it was.
    const std::vector<EntryDifference> &differences() const { return differences_; }
    // Of an entry of either store; null for none of theirs, or one that was gone already.
    const EntryDifference *differenceOf(const TavRegistryEntry &entry) const;

    // Without that of the properties.
    std::vector<FactChange> factChanges(const EntryDifference &difference) const;
    PropertyDifferences propertyDifferences(const EntryDifference &difference,
                                            const PropertyClass &nodeClass) const;
    PropertyDifferences::Rules rulesFor(const EntryDifference &difference) const;

private:
    using Places = std::vector<quint32>; // in the differences, by the number of an entry

    static constexpr quint32 noPlace = ~quint32(0);

    const VolatileAttributes &volatileAttributes() const;
    void listInOrder();
    void listPlane(const QString &plane);
    void addDifference(TavRegistryEntry *before, TavRegistryEntry *after);
    bool isListed(const TavRegistryEntry &entry, bool isAfter) const;
    std::vector<bool> parentsOfRemoved(const QString &plane) const;
    EntryList::Entries childrenInOrder(const TavRegistryEntry *before,
                                       const TavRegistryEntry *after, const QString &plane) const;
    void judgeAll(const Reach &reach);
    void judge(EntryDifference &difference) const;
    FactDifferences placeDifferences(const EntryDifference &difference) const;
    bool haveSameParents(const EntryDifference &difference, const QString &plane) const;
    void judgeName(EntryDifference &difference) const;
    void judgeProperties(EntryDifference &difference) const;
    bool isRenumbered(const EntryDifference &difference) const;
    void count(const EntryDifference &difference);

    const TavDataStore &before_;
    const TavDataStore &after_;
    Options options_;
    EntryPairing pairing_;
    std::vector<EntryDifference> differences_;
    Places beforePlaces_;
    Places afterPlaces_;
    Counts counts_;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

class TavDataStore;
class VolatileAttributes;

// Finds which entries of two stores are the same thing: first by registry ID within one boot, then
// by their paths, then by what a device keeps when it moves. Each step takes equal candidates in
// order. Any thread.
class EntryPairing
{
public:
    struct Pair
    {
        TavRegistryEntry *before;
        TavRegistryEntry *after;
    };

    EntryPairing(const TavDataStore &before, const TavDataStore &after,
                 const VolatileAttributes &volatileAttributes);

    // All pairs, those of parents before those of children in most cases.
    const std::vector<Pair> &pairs() const { return pairs_; }
    // The partner of an entry of before, or of after; null: it has none.
    TavRegistryEntry *inAfter(const TavRegistryEntry &before) const
    {
        return inAfter_[before.number()];
    }
    TavRegistryEntry *inBefore(const TavRegistryEntry &after) const
    {
        return inBefore_[after.number()];
    }

    static bool isPresent(const TavRegistryEntry &entry); // not terminated
    static std::size_t countPresent(const TavDataStore &store);

private:
    using Partners = std::vector<TavRegistryEntry *>; // by number
    using Queues = QHash<QString, std::vector<TavRegistryEntry *>>;
    // A text that two entries must share; empty: it has none.
    using Key = std::function<QString(const TavRegistryEntry &)>;

    void pair(TavRegistryEntry &before, TavRegistryEntry &after);
    void pairByID();
    void pairByPath();
    bool pairChildren(const QString &plane, std::size_t &next, const Key &key);
    void pairMatching(const EntryList::Entries &before, const EntryList::Entries &after,
                      const Key &key);
    std::size_t pairEqualStart(const EntryList::Entries &before, const EntryList::Entries &after,
                               const Key &key);
    void pairByIdentity();
    void pairSimilar();
    bool isComplete() const { return pairs_.size() >= maxPairs_; }
    template<class Entries>
    static EntryList::Entries unpaired(const Entries &entries, const Partners &partners);

    const TavDataStore &before_;
    const TavDataStore &after_;
    const VolatileAttributes &volatileAttributes_;
    QStringList planes_;                  // the service plane first
    std::vector<std::size_t> nextByPath_; // of the pairs, by plane
    std::size_t nextSimilar_ = 0;
    std::size_t maxPairs_; // all entries of the smaller store
    std::vector<Pair> pairs_;
    Partners inAfter_;
    Partners inBefore_;
};

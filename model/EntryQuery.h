#pragma once

#include "model/EntryOrder.h"
#include "model/FindOptions.h"
#include "model/TavRegistryEntry.h"
#include "model/TextSearch.h"

// One search through the entries of a store. Each entry is looked at once for what is the same in
// every plane, and once in each plane for its name there, however many ways lead to it.
class EntryQuery
{
public:
    EntryQuery(const QString &query, FindOptions options);

    // Looks at the entries ahead of the walks, which then find the answers. Entries are quickest
    // looked at in the order of their table, which is about that of their memory. Copies of one
    // query may look at different entries at the same time.
    void prepare(std::span<const EntryRef> entries);

    // The answer for the entry; with a place to tell of it and a plane, also for all below it
    // there.
    bool run(TavRegistryEntry &top, bool *descendantMatches, const QString &plane);

    // Keeps the answer for every entry of the order and whether any below it matched; gives the
    // latter for the top.
    bool run(const EntryOrder &order);

private:
    // Preparing waits for memory more than for anything else: these ask for what the next few
    // entries need, first the entry itself and later its properties.
    static void fetch(const TavRegistryEntry &next);
    void fetchProperties(const TavRegistryEntry &next) const;
    void prepare(TavRegistryEntry &entry);
    bool looksAt(FindOption option) const { return !options_ || options_.testFlag(option); }
    bool matches(TavRegistryEntry &entry, const QString &plane);
    bool matchesInAnyPlane(const TavRegistryEntry &entry) const;
    bool matchesInProperties(const TavRegistryEntry &entry) const;
    bool matchesKeys(QByteArrayView keys) const;
    static bool hasOneName(const TavRegistryEntry &entry);
    bool matchesByNameSomewhere(const TavRegistryEntry &entry);
    bool matchesByName(const QString &name, const QString &location);

    TavRegistryEntry::SpecialTest special_;
    FindOptions options_;
    TextSearch search_;
    bool asksForLocation_;
    quint32 settled_;                 // marks entries whose answer is the same in every plane
    quint32 open_;                    // marks those whose name in the plane decides
    mutable QByteArrayView lastKeys_; // that were looked at
    mutable bool lastKeysMatch_ = false;
    QString seam_; // put together of name and location
};

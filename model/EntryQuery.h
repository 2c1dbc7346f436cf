// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/EntryOrder.h"
#include "model/FindOptions.h"
#include "model/ShownValueTest.h"
#include "model/TavRegistryEntry.h"
#include "model/TextSearch.h"

// One search through the entries of a store. Each entry is checked once for what is the same in
// every plane, and once in each plane for its name there, however many paths lead to it.
class EntryQuery
{
public:
    // All entries have numbers below the limit. Without a test, no shown value matches.
    EntryQuery(const QString &query, FindOptions options, std::size_t numberLimit,
               ShownValueTest shownValues = nullptr);

    // Checks the entries ahead of the walks. This is fastest in the order of their table, which is
    // about that of their memory. Copies share the answers, and may check different entries at the
    // same time.
    void prepare(std::span<const EntryRef> entries);

    // Whether the entry matches. With descendantMatches and a plane, runs on all entries below it
    // there, too.
    bool run(TavRegistryEntry &top, bool *descendantMatches, const QString &plane);

    // Stores in every entry of the order whether it matches and whether any below it does; returns
    // the latter for the top.
    bool run(const EntryOrder &order);

private:
    enum class Answer : quint8 {
        Unknown,
        No, // in every plane
        Yes,
        ByName, // the name in the plane decides
    };

    // Preparing mostly waits for memory: these fetch what the next few entries need, first the
    // entry itself and later its properties.
    static void fetch(const TavRegistryEntry &next);
    void fetchProperties(const TavRegistryEntry &next) const;
    Answer prepare(const TavRegistryEntry &entry);
    bool looksAt(FindOption option) const { return !options_ || options_.testFlag(option); }
    bool matches(const TavRegistryEntry &entry, const QString &plane);
    bool matchesInAnyPlane(const TavRegistryEntry &entry) const;
    bool matchesDeviceName(const TavRegistryEntry &entry) const;
    bool matchesInProperties(const TavRegistryEntry &entry) const;
    bool matchesKeys(QByteArrayView keys) const;
    static bool hasOneName(const TavRegistryEntry &entry);
    bool matchesByNameSomewhere(const TavRegistryEntry &entry);
    bool matchesByName(const QString &name, const QString &location);

    TavRegistryEntry::SpecialTest special_;
    FindOptions options_;
    TextSearch search_;
    ShownValueTest shownValues_; // null: not looked at
    bool asksForLocation_;
    std::shared_ptr<std::vector<Answer>> answers_; // by number of the entry
    mutable QByteArrayView lastKeys_;              // that were checked
    mutable bool lastKeysMatch_ = false;
    QString seam_; // the end of a name and the start of its location
};

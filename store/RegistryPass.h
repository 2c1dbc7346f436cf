// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

// Updates the entries of a live store from its service. Skips entries that the service reports as
// unchanged since the previous pass; links become the same as after reading every entry in the
// store's order.
class RegistryPass
{
public:
    // Reads the entries; appends and reads those found on the way.
    void run(RegistryService &service, const std::vector<EntryRef> &entries,
             const QStringList &planes);
    // The next pass reads everything.
    void forget() { lastReading_ = 0; }
    // Call when entries have left the store.
    void noteDropped(std::size_t countBefore, std::size_t countAfter);

private:
    using Entries = std::vector<EntryRef>;

    static void readAll(const Entries &entries);
    static void readChanged(const Entries &changed, const Entries &entries);
    Entries changedEntries(RegistryService &service, const Entries &entries) const;
    void noteOutOfOrder(const Entries &entries);
    static void orderParents(const EntrySet &children, const Entries &entries);

    quint64 lastReading_ = 0;   // of the service; 0: none
    std::size_t lastCount_ = 0; // of entries after it
    QStringList planes_;        // that were read
    EntrySet outOfOrder_;       // entries whose children were renamed after sorting
};

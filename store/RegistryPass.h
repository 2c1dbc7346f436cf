#pragma once

#include "model/TavRegistryEntry.h"

// Brings the entries of a live store up to what its service has read. An entry of which the service
// knows that nothing has changed since the pass before is left as it is; all links are as if every
// entry had been read again in the store's order.
class RegistryPass
{
public:
    // Reads the entries; those that are found on the way are appended, and read as well.
    void run(RegistryService &service, const std::vector<EntryRef> &entries,
             const QStringList &planes);
    // The next pass reads everything.
    void forget() { lastReading_ = 0; }
    // Entries have left the store.
    void noteDropped(std::size_t countBefore, std::size_t countAfter);

private:
    using Entries = std::vector<EntryRef>;

    static void readAll(const Entries &entries);
    static void readChanged(const Entries &changed, const Entries &entries);
    Entries changedEntries(RegistryService &service, const Entries &entries) const;
    void noteOutOfOrder(const Entries &entries);
    static void orderParents(const EntrySet &children, const Entries &entries);

    quint64 lastReading_ = 0;   // of the service; 0: none that counts
    std::size_t lastCount_ = 0; // of the entries after it
    QStringList planes_;        // that were read for
    EntrySet outOfOrder_;       // whose children got their names after they were put in order
};

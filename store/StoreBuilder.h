// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/TavDataStore.h"

// Makes a data store of copies of entries: one that is not live and has no file. Main thread.
class StoreBuilder
{
public:
    StoreBuilder();

    const std::shared_ptr<TavDataStore> &store() const { return store_; }
    void takeMachineFacts(const TavDataStore &from, const QStringList &planes);
    EntryRef addEntry(); // an empty one, after the others
    // Replaces all entries by these, root first. Others leave the store.
    void setEntries(std::vector<EntryRef> entries);
    void announceChange();

    // What an entry knows of itself, without its relatives.
    static EntryRecord factsWithoutLinks(const TavRegistryEntry &entry);
    // Copies the properties, unless the copy has them already, and the name of the device.
    static void copyProperties(const TavRegistryEntry &entry, TavRegistryEntry &copy);

    // A copy of a store as it is now, which changes of the original do not reach.
    static std::shared_ptr<TavDataStore> copyOf(const TavDataStore &original);

private:
    std::shared_ptr<TavDataStore> store_;
};

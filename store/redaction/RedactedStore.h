// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/TavDataStore.h"
#include "store/redaction/Redactor.h"

// A copy of a data store without what should not be shared. The original stays as it is. May be
// made on any thread while nothing changes the original.
class RedactedStore
{
public:
    using Reach = std::function<void(double)>; // gets the part that is done, from 0 to 1

    RedactedStore(const TavDataStore &original, const Reach &reach);
    // Copies of two stores in which the same value becomes the same token, and different ones stay
    // different.
    struct Pair
    {
        std::unique_ptr<RedactedStore> before;
        std::unique_ptr<RedactedStore> after;
    };
    static Pair copiesOf(const TavDataStore &before, const TavDataStore &after, const Reach &reach);

    const TavDataStore &store() const { return *store_; }
    // The copy of an entry of the original.
    const TavRegistryEntry *counterpart(const TavRegistryEntry &entry) const
    {
        return copies_.value(&entry);
    }
    // A text about the registry, such as the name of its file.
    QString text(const QString &text) const { return redactor_->text(text); }

private:
    RedactedStore(const TavDataStore &original, std::shared_ptr<Redactor> redactor);
    void learnAll(double from, double part, const Reach &reach);
    void copyAll(double from, double part, const Reach &reach);
    void learn(const TavRegistryEntry &entry);
    void learnTree(const TavRegistryProperty &root, const QString &subsystem);
    void makeEntries();
    EntryRecord factsOf(const TavRegistryEntry &entry) const;
    NamesByPlane namesOf(const NamesByPlane &names) const;
    void copyRelatives(PlaneMap<EntryList> &copy, const PlaneMap<EntryList> &original) const;
    void copyProperties(const TavRegistryEntry &entry, TavRegistryEntry &copy) const;
    std::vector<PropertyRecord> nodesOf(const TavRegistryEntry &entry) const;

    const TavDataStore &original_;
    std::shared_ptr<Redactor> redactor_; // also of the other one of a pair
    std::unique_ptr<TavDataStore> store_;
    QHash<const TavRegistryEntry *, TavRegistryEntry *> copies_;
};

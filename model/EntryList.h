#pragma once

#include <QSet>
#include <memory>
#include <vector>

class TavRegistryEntry;

// An ordered list of entries, none twice, that stays quick when it is long. Does not own them.
class EntryList
{
public:
    using Entries = std::vector<TavRegistryEntry *>;

    const Entries &entries() const { return entries_; }
    bool contains(TavRegistryEntry *entry) const;
    void add(TavRegistryEntry *entry);    // nothing when it is in the list already
    void append(TavRegistryEntry *entry); // one known not to be in the list
    template<class Predicate>
    void removeIf(Predicate predicate)
    {
        if (std::erase_if(entries_, predicate) > 0)
            index_.reset();
    }
    void setOrder(Entries entries) { entries_ = std::move(entries); } // the same entries
    void clear();

private:
    Entries entries_;
    mutable std::unique_ptr<QSet<TavRegistryEntry *>> index_; // made on demand for long lists
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSet>
#include <atomic>
#include <memory>
#include <vector>

class TavRegistryEntry;

// An ordered list of entries without duplicates, fast also when it is long. Does not own them.
class EntryList
{
public:
    using Entries = std::vector<TavRegistryEntry *>;

    EntryList() = default;
    EntryList(EntryList &&) noexcept = default;
    EntryList &operator=(EntryList &&) noexcept = default;
    ~EntryList() { noteChange(); }

    // Counts the changes of all lists, so that caches know whether they are still valid. Global: a
    // list has no place for a pointer to its store.
    static quint64 changes() { return changes_.load(std::memory_order_relaxed); }

    const Entries &entries() const { return entries_; }
    bool contains(TavRegistryEntry *entry) const;
    void add(TavRegistryEntry *entry);    // does nothing when it is listed already
    void append(TavRegistryEntry *entry); // must not be in the list yet
    template<class Predicate>
    void removeIf(Predicate predicate)
    {
        if (std::erase_if(entries_, predicate) > 0) {
            index_.reset();
            noteChange();
        }
    }
    void setOrder(Entries entries) // the same entries
    {
        entries_ = std::move(entries);
        noteChange();
    }
    void clear();

private:
    static void noteChange() { changes_.fetch_add(1, std::memory_order_relaxed); }

    inline static std::atomic<quint64> changes_ = 0;
    Entries entries_;
    mutable std::unique_ptr<QSet<TavRegistryEntry *>> index_; // built on demand for long lists
};

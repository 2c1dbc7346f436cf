#pragma once

#include <QSet>
#include <atomic>
#include <memory>
#include <vector>

class TavRegistryEntry;

// An ordered list of entries, none twice, that stays quick when it is long. Does not own them.
class EntryList
{
public:
    using Entries = std::vector<TavRegistryEntry *>;

    EntryList() = default;
    EntryList(EntryList &&) noexcept = default;
    EntryList &operator=(EntryList &&) noexcept = default;
    ~EntryList() { noteChange(); }

    // Counts the changes of all lists, so that what was made of them can tell whether it holds.
    static quint64 changes() { return changes_.load(std::memory_order_relaxed); }

    const Entries &entries() const { return entries_; }
    bool contains(TavRegistryEntry *entry) const;
    void add(TavRegistryEntry *entry);    // nothing when it is in the list already
    void append(TavRegistryEntry *entry); // one known not to be in the list
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
    mutable std::unique_ptr<QSet<TavRegistryEntry *>> index_; // made on demand for long lists
};

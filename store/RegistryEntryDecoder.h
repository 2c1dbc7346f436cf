#pragma once

#include "store/LinkChecker.h"
#include "store/PropertyTreeDecoder.h"

// Decodes the entries of a store after all of them have been created.
class RegistryEntryDecoder
{
public:
    // Entries by archive object; null: not an entry.
    RegistryEntryDecoder(KeyedUnarchiver &unarchiver,
                         const std::vector<TavRegistryEntry *> &entries);

    // False, and logged except for a newer version, on failure.
    bool decode(ArchiveReference reference)
    {
        return decodeFacts(reference) && decodeProperties(reference);
    }
    // Its two parts, for two threads with a decoder each.
    bool decodeFacts(ArchiveReference reference);
    bool decodeProperties(ArchiveReference reference);
    bool finish(); // after the last entry; false when the links are inconsistent

private:
    bool decodeDates(const ArchivedObject &object, EntryFacts &facts);
    bool decodeNames(const ArchivedObject &object, EntryFacts &facts);
    bool decodeRelations(const ArchivedObject &object, EntryFacts &facts);
    bool decodeCountsAndFlags(const ArchivedObject &object, EntryFacts &facts);
    bool decodeState(const ArchivedObject &object, EntryFacts &facts);
    bool decodeOldState(const ArchivedObject &object, EntryFacts &facts);
    bool decodeOldProperties(const ArchivedObject &object, TavRegistryEntry &entry);
    static qint32 versionOf(const ArchivedObject &object);
    bool decodeInheritance(const ArchivedObject &object, EntryFacts &facts);
    bool decodeNewInheritance(const ArchivedObject &object, EntryFacts &facts);
    bool setNames(NamesByPlane &names, const ArchivedValue &value);
    bool setRelatives(PlaneMap<EntryList> &table, LinkChecker &links, quint32 entry,
                      const ArchivedValue &value);
    bool readRelatives(const ArchivedValue &list);
    void check(const LinkChecker &links);
    bool isDecoded(const QString &name, const char *what);
    bool succeeded(const char *what);
    bool fail(const char *what, const char *reason);

    KeyedUnarchiver &unarchiver_;
    const std::vector<TavRegistryEntry *> &entries_;
    PropertyTreeDecoder properties_;
    // By archive object: the last list that contains the entry, to find duplicates.
    std::vector<quint64> lastList_;
    quint64 listCount_ = 0;
    std::vector<quint32> relatives_; // of the current list
    struct Inheritance
    {
        std::vector<quint64> identities; // of its strings
        QStringList classes;
    };
    QHash<quint64, Inheritance> inheritances_; // the last one by first string: entries share them
    std::vector<quint64> identities_;          // of the current list
    std::size_t entryCount_ = 0;
    LinkChecker childLinks_{LinkChecker::Direction::ToChildren};
    LinkChecker parentLinks_{LinkChecker::Direction::ToParents};
};

#pragma once

#include "store/PlaneLinks.h"
#include "store/PropertyTreeDecoder.h"

// Decodes the entries of a store, one after another, once all of them have been made.
class RegistryEntryDecoder
{
public:
    // The table gives the entry for an object of the archive; what is not in it or null is none.
    RegistryEntryDecoder(KeyedUnarchiver &unarchiver,
                         const std::vector<TavRegistryEntry *> &entries);

    // False, and logged but for a newer version, when the entry cannot be decoded.
    bool decode(ArchiveReference reference)
    {
        return decodeFacts(reference) && decodeProperties(reference);
    }
    // Its two parts, which may be done on two threads by a decoder each.
    bool decodeFacts(ArchiveReference reference);
    bool decodeProperties(ArchiveReference reference);
    bool finish(); // after the last; false when they do not fit together

private:
    bool decodeDates(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeNames(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeRelations(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeCountsAndFlags(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeState(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeOldState(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeOldProperties(const ObjectDecoder &object, TavRegistryEntry &entry);
    static qint32 versionOf(const ObjectDecoder &object);
    bool decodeInheritance(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool decodeNewInheritance(const ObjectDecoder &object, TavRegistryEntry &entry);
    bool setNames(PlaneNames &names, const ArchiveValueView &value);
    bool setRelatives(PlaneTable<EntryList> &table, PlaneLinks &links, quint32 entry,
                      const ArchiveValueView &value);
    bool readRelatives(const ArchiveValueView &list);
    void check(const PlaneLinks &links);
    bool isDecoded(const QString &name, const char *what);
    bool succeeded(const char *what);
    bool fail(const char *what, const char *reason);

    KeyedUnarchiver &unarchiver_;
    const std::vector<TavRegistryEntry *> &entries_;
    PropertyTreeDecoder properties_;
    // The list that an entry was last put into, by object: none twice in one.
    std::vector<quint64> lastList_;
    quint64 listCount_ = 0;
    std::vector<quint32> relatives_; // of the current list
    struct Inheritance
    {
        std::vector<quint64> identities; // of its strings
        QStringList classes;
    };
    QHash<quint64, Inheritance>
        inheritances_;                // by the first string, the last one: entries share them
    std::vector<quint64> identities_; // of the current list
    std::size_t entryCount_ = 0;
    PlaneLinks childLinks_{PlaneLinks::Direction::ToChildren};
    PlaneLinks parentLinks_{PlaneLinks::Direction::ToParents};
};

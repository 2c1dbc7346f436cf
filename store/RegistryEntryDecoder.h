// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/LinkChecker.h"
#include "store/PropertyTreeDecoder.h"

#include <array>
#include <map>

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
    bool decodeDates(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeNames(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeRelations(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeCountsAndFlags(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeState(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeOldState(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeOldProperties(const ObjectDecoder &object, TavRegistryEntry &entry);
    static qint32 versionOf(const ObjectDecoder &object);
    bool decodeKernelPath(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeInheritance(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeNewInheritance(const ObjectDecoder &object, EntryRecord &facts);
    bool decodeDeviceName(const ObjectDecoder &object, TavRegistryEntry &entry);
    // Model, vendor and class, as the archive shares them; null: missing.
    using DeviceNameTexts = std::array<const QString *, 3>;
    static bool readDeviceName(const ArchiveValueView &table, DeviceNameTexts &texts);
    bool setNames(NamesByPlane &names, const ArchiveValueView &value);
    bool setRelatives(PlaneMap<EntryList> &table, LinkChecker &links, quint32 entry,
                      const ArchiveValueView &value);
    bool readRelatives(const ArchiveValueView &list);
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
    std::map<DeviceNameTexts, DeviceNameRef> deviceNames_; // entries of one kind share them
    std::size_t entryCount_ = 0;
    LinkChecker childLinks_{LinkChecker::Direction::ToChildren};
    LinkChecker parentLinks_{LinkChecker::Direction::ToParents};
};

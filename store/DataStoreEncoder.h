// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "store/LinkChecker.h"
#include "store/TavDataStore.h"

// Writes a data store, with its entries and their property trees, as the archive of a document.
class DataStoreEncoder
{
public:
    // Null on success, else the reason; the device then holds an incomplete archive.
    static QString encode(const TavDataStore &store, QIODevice &device);

private:
    // An entry's children or parents.
    struct Relatives
    {
        QLatin1String key;
        PlaneMap<EntryList> EntryRecord::*table;
        LinkChecker::Direction direction;
        LinkChecker::LinkSets leftOut = {}; // by archive object
    };

    DataStoreEncoder(const TavDataStore &store, QIODevice &device);
    bool isAllowed() const; // false when the archive could not be opened again
    void makeMissingTrees();
    bool settleLinks(); // likewise
    LinkChecker linksTo(const Relatives &relatives);
    void encodeStore(const TavDataStore &store);
    void encodeEntry(const TavRegistryEntry &entry);
    void encodeDeviceName(const DeviceName &name);
    void encodeProperty(const TavRegistryProperty &node);
    void encodeParent(const TavRegistryProperty &node);
    void encodeValue(const RegistryValue &value);
    void encodeChildren(const TavRegistryProperty &node);
    void encodeStrings(QLatin1String key, const QStringList &strings);
    void encodeNames(QLatin1String key, const NamesByPlane &names);
    void encodeRelatives(const TavRegistryEntry &entry, const Relatives &relatives);
    // Of the entry with this archive object.
    std::vector<ArchiveReference> writtenRelatives(quint32 number, const Relatives &relatives,
                                                   const PlaneMap<EntryList>::Item &item);
    const TavRegistryProperty *treeOf(const TavRegistryEntry &entry) const;

    const TavDataStore &store_;
    KeyedArchiver archiver_;
    ArchiveClass<TavDataStore> storeClass_;
    ArchiveClass<TavRegistryEntry> entryClass_;
    ArchiveClass<TavRegistryProperty> propertyClass_;
    Relatives children_;
    Relatives parents_;
    QHash<const TavRegistryEntry *, PropertyRef> missingTrees_;
    // The actual parent of each node that names another one as its parent.
    QHash<const TavRegistryProperty *, const TavRegistryProperty *> listers_;
};

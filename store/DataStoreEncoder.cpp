// SPDX-License-Identifier: Apache-2.0
#include "store/DataStoreEncoder.h"

#include "store/ArchiveKeys.h"
#include "store/RegistryValueCoding.h"
#include "store/SnapshotLimits.h"

namespace {
constexpr qint32 dataStoreVersion = 2;

qint32 collectionType(RegistryValue::Type type)
{
    switch (type) {
    case RegistryValue::Type::Array:
        return 1;
    case RegistryValue::Type::Dictionary:
        return 2;
    case RegistryValue::Type::Set:
        return 3;
    default:
        return 0;
    }
}
} // namespace

QString DataStoreEncoder::encode(const TavDataStore &store, QIODevice &device)
{
    DataStoreEncoder encoder(store, device);
    if (!encoder.isAllowed())
        return QStringLiteral("there are too many planes or classes, or names that are too long");
    encoder.makeMissingTrees();
    if (!encoder.settleLinks())
        return QStringLiteral("the entries have more paths than can be followed");
    // Keep all trees until they are written: nodes are identified by address.
    std::vector<TavRegistryEntry *> treeless;
    for (const EntryRef &entry : store.registryEntries()) {
        if (!entry->hasTree())
            treeless.push_back(entry.get());
    }
    encoder.archiver_.encodeRoot(store, encoder.storeClass_);
    for (TavRegistryEntry *entry : treeless)
        entry->dropUnusedTree();
    return encoder.archiver_.errorString();
}

DataStoreEncoder::DataStoreEncoder(const TavDataStore &store, QIODevice &device)
    : store_(store)
    , archiver_(device)
    , storeClass_(archiver_.addClass<TavDataStore>(
          ArchiveClassName::dataStore[0],
          [this](const TavDataStore &object, KeyedArchiver &) { encodeStore(object); }))
    , entryClass_(archiver_.addClass<TavRegistryEntry>(
          ArchiveClassName::entry[0],
          [this](const TavRegistryEntry &object, KeyedArchiver &) { encodeEntry(object); }))
    , propertyClass_(archiver_.addClass<TavRegistryProperty>(
          ArchiveClassName::property[0],
          [this](const TavRegistryProperty &object, KeyedArchiver &) { encodeProperty(object); }))
    , children_{EntryKey::childrenInPlanes, &EntryRecord::childrenInPlanes,
                LinkChecker::Direction::ToChildren}
    , parents_{EntryKey::parentsInPlanes, &EntryRecord::parentsInPlanes,
               LinkChecker::Direction::ToParents}
{}

bool DataStoreEncoder::isAllowed() const
{
    using Limits = SnapshotLimits;
    const auto havePlanes = [](const auto &table) {
        return std::all_of(table.begin(), table.end(),
                           [](const auto &item) { return Limits::allowName(item.plane()); });
    };
    const auto haveNames = [&](const NamesByPlane &names) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (!Limits::allowName(names.plane(i)) || names.name(i).size() > Limits::maxNameSize)
                return false;
        }
        return true;
    };
    const auto &entries = store_.registryEntries();
    return Limits::allowPlanes(store_.registryPlanes()) &&
           std::all_of(entries.begin(), entries.end(), [&](const EntryRef &entry) {
               return Limits::allowName(entry->facts().name) &&
                      Limits::allowName(entry->facts().location) &&
                      Limits::allowName(entry->facts().bundleID) &&
                      Limits::allowClasses(entry->facts().inheritance) &&
                      haveNames(entry->facts().namesInPlanes) &&
                      haveNames(entry->facts().locationsInPlanes) &&
                      havePlanes(entry->facts().childrenInPlanes) &&
                      havePlanes(entry->facts().parentsInPlanes);
           });
}

// An entry that could not be read has no tree, but an archive needs one.
void DataStoreEncoder::makeMissingTrees()
{
    for (const EntryRef &entry : store_.registryEntries()) {
        if (entry->hasProperties())
            continue;
        const PropertyRef tree = TavRegistryProperty::create(
            TavRegistryProperty::staticPropertyClass(), entry, entry->dateDiscovered(), nullptr, {},
            0, RegistryValue::dictionary({}));
        tree->clearIsNew();
        missingTrees_.insert(entry.get(), tree);
    }
}

void DataStoreEncoder::encodeStore(const TavDataStore &store)
{
    std::vector<ArchiveReference> entries;
    for (const EntryRef &entry : store.registryEntries())
        entries.push_back(archiver_.reference(*entry, entryClass_));
    archiver_.encodeInteger(DataStoreKey::version, dataStoreVersion);
    archiver_.encodeString(DataStoreKey::hostName, store.hostName());
    archiver_.encodeString(DataStoreKey::archName, store.archName());
    archiver_.encodeValue(DataStoreKey::byteOrder,
                          ArchiveNumber{static_cast<quint32>(store.byteOrder()), 4, true});
    archiver_.encodeReferences(DataStoreKey::registryEntries, entries);
    encodeStrings(DataStoreKey::registryPlanes, store.registryPlanes());
    archiver_.encodeDate(DataStoreKey::lastUpdateDate, store.lastUpdateDate());
    archiver_.encodeBoolean(DataStoreKey::isUpToDate, store.isUpToDate());
}

void DataStoreEncoder::encodeEntry(const TavRegistryEntry &entry)
{
    archiver_.encodeInteger(EntryKey::version, TavRegistryEntry::classVersion);
    archiver_.encodeReference(EntryKey::dataStore, archiver_.reference(store_, storeClass_));
    archiver_.encodeDate(EntryKey::dateDiscovered, entry.dateDiscovered());
    archiver_.encodeDate(EntryKey::dateLastUpdated, entry.dateLastUpdated());
    archiver_.encodeDate(EntryKey::dateTerminated, entry.facts().dateTerminated);
    archiver_.encodeString(EntryKey::bundleID, entry.bundleID());
    encodeStrings(EntryKey::inheritance, entry.inheritance());
    archiver_.encodeString(EntryKey::name, entry.facts().name);
    encodeNames(EntryKey::namesInPlanes, entry.facts().namesInPlanes);
    archiver_.encodeString(EntryKey::location, entry.facts().location);
    encodeNames(EntryKey::locationsInPlanes, entry.facts().locationsInPlanes);
    encodeRelatives(entry, children_);
    encodeRelatives(entry, parents_);
    archiver_.encodeInteger(EntryKey::entryTag, entry.entryTag());
    archiver_.encodeInteger(EntryKey::busyCount, entry.busyCount());
    archiver_.encodeInteger(EntryKey::kernelRetainCount, entry.kernelRetainCount());
    archiver_.encodeBoolean(EntryKey::isRegistryRoot, entry.isRegistryRoot());
    archiver_.encodeBoolean(EntryKey::conformsToDxService, entry.conformsToDxService());
    archiver_.encodeBoolean(EntryKey::isRegistered, entry.isRegistered());
    archiver_.encodeBoolean(EntryKey::isMatched, entry.isMatched());
    archiver_.encodeBoolean(EntryKey::isActive, entry.isActive());
    archiver_.encodeInteger(EntryKey::registryState, static_cast<quint32>(entry.registryState()));
    archiver_.encodeReference(EntryKey::properties,
                              archiver_.reference(*treeOf(entry), propertyClass_));
    if (entry.facts().kernelPath.size() > 0)
        archiver_.encodeString(EntryKey::kernelPath, entry.kernelPath());
    if (const DeviceName *const name = entry.deviceName())
        encodeDeviceName(*name);
}

void DataStoreEncoder::encodeDeviceName(const DeviceName &name)
{
    ArchiveDictionary dictionary;
    for (const auto &[key, text] : {std::pair(DeviceNameKey::model, name.model()),
                                    std::pair(DeviceNameKey::vendor, name.vendor()),
                                    std::pair(DeviceNameKey::className, name.className())}) {
        if (!text.isNull())
            dictionary.push_back({QString(key), text});
    }
    archiver_.encodeValue(EntryKey::deviceName, dictionary);
}

const TavRegistryProperty *DataStoreEncoder::treeOf(const TavRegistryEntry &entry) const
{
    return entry.hasProperties() ? entry.properties() : missingTrees_.value(&entry).get();
}

void DataStoreEncoder::encodeProperty(const TavRegistryProperty &node)
{
    archiver_.encodeInteger(PropertyKey::version, TavRegistryProperty::classVersion);
    archiver_.encodeBoolean(PropertyKey::isCollection, node.isCollection());
    archiver_.encodeBoolean(PropertyKey::hasName, node.hasName());
    archiver_.encodeDate(PropertyKey::dateRead, node.dateRead());
    archiver_.encodeReference(PropertyKey::registryEntry,
                              archiver_.reference(*node.registryEntry(), entryClass_));
    archiver_.encodeInteger(PropertyKey::registryState, static_cast<quint32>(node.registryState()));
    encodeParent(node);
    if (node.hasName())
        archiver_.encodeString(PropertyKey::name, node.name());
    else
        archiver_.encodeInteger(PropertyKey::index, node.index());
    if (node.isCollection())
        encodeChildren(node);
    else
        encodeValue(node.value());
}

void DataStoreEncoder::encodeValue(const RegistryValue &value)
{
    archiver_.encodeValue(PropertyKey::value, archiveValue(value));
    if (value.notation() != RegistryValue::Notation::Unknown)
        archiver_.encodeInteger(PropertyKey::notation, static_cast<quint32>(value.notation()));
}

void DataStoreEncoder::encodeParent(const TavRegistryProperty &node)
{
    const TavRegistryProperty *parent = listers_.value(&node, node.parent());
    if (parent)
        archiver_.encodeReference(PropertyKey::parent,
                                  archiver_.reference(*parent, propertyClass_));
    else
        archiver_.encodeReference(PropertyKey::parent, {});
}

// Children of a terminated copy name the original as their parent, which is not part of the
// snapshot.
void DataStoreEncoder::encodeChildren(const TavRegistryProperty &node)
{
    std::vector<ArchiveReference> children;
    children.reserve(static_cast<std::size_t>(node.numberOfChildren()));
    for (const TavRegistryProperty *child : node.children()) {
        children.push_back(archiver_.reference(*child, propertyClass_));
        if (child->parent() != &node)
            listers_.insert(child, &node);
    }
    archiver_.encodeInteger(PropertyKey::collectionType, collectionType(node.valueType()));
    archiver_.encodeReferences(PropertyKey::children, children);
}

void DataStoreEncoder::encodeStrings(QLatin1String key, const QStringList &strings)
{
    archiver_.encodeValue(key, ArchiveList(strings.begin(), strings.end()));
}

void DataStoreEncoder::encodeNames(QLatin1String key, const NamesByPlane &names)
{
    ArchiveDictionary dictionary;
    for (std::size_t i = 0; i < names.size(); ++i)
        dictionary.push_back({names.plane(i), names.name(i).toOwner()});
    archiver_.encodeValue(key, dictionary);
}

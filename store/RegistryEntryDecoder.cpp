// SPDX-License-Identifier: Apache-2.0
#include "store/RegistryEntryDecoder.h"

#include "store/ArchiveKeys.h"
#include "store/DecodingLog.h"
#include "store/PropertyListReader.h"
#include "store/SnapshotLimits.h"

namespace {
using Members = std::vector<std::pair<const QString *, ArchiveValueView>>;

// Filling sorted plane maps in another order takes quadratic time.
Members sortedByKey(const ArchiveValueView &dictionary)
{
    Members members;
    dictionary.forEachMember([&](const QString &key, const ArchiveValueView &value) {
        members.emplace_back(&key, value);
        return true;
    });
    const auto isBefore = [](const auto &a, const auto &b) { return *a.first < *b.first; };
    if (!std::is_sorted(members.begin(), members.end(), isBefore))
        std::sort(members.begin(), members.end(), isBefore);
    return members;
}
} // namespace

RegistryEntryDecoder::RegistryEntryDecoder(KeyedUnarchiver &unarchiver,
                                           const std::vector<TavRegistryEntry *> &entries)
    : unarchiver_(unarchiver)
    , entries_(entries)
    , properties_(unarchiver)
    , lastList_(entries.size())
{}

qint32 RegistryEntryDecoder::versionOf(const ObjectDecoder &object)
{
    const qint32 unmarked = object.contains(EntryKey::dataStore) ? 2 : 1;
    return object.decodeInteger<qint32>(EntryKey::version, unmarked);
}

bool RegistryEntryDecoder::decodeFacts(ArchiveReference reference)
{
    const ObjectDecoder object = unarchiver_.object(reference);
    EntryRecord facts;
    ++entryCount_;
    const qint32 version = versionOf(object);
    if (version > TavRegistryEntry::classVersion || !succeeded(EntryKey::version.data()))
        return false;
    if (!decodeDates(object, facts) || !decodeNames(object, facts) ||
        !decodeRelations(object, facts) || !decodeCountsAndFlags(object, facts))
        return false;
    if (!(version == TavRegistryEntry::classVersion ? decodeState(object, facts)
                                                    : decodeOldState(object, facts)))
        return false;
    entries_[reference.index]->restore(std::move(facts));
    return decodeDeviceName(object, *entries_[reference.index]);
}

// Absent in older files, and where no database knew the device.
bool RegistryEntryDecoder::decodeDeviceName(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    const ArchiveValueView table =
        object.valueView(EntryKey::deviceName, ArchiveKind::Dictionary | ArchiveKind::String);
    if (table.isAbsent() && !unarchiver_.error())
        return true;
    DeviceNameTexts texts{};
    if (!table.isDictionary() || !readDeviceName(table, texts))
        return fail(EntryKey::deviceName.data(), "not a table of names, or a name is too long");
    DeviceNameRef &known = deviceNames_[texts];
    if (!known) {
        const auto text = [](const QString *found) { return found ? *found : QString(); };
        known = std::make_shared<DeviceName>(text(texts[0]), text(texts[1]), text(texts[2]));
    }
    entry.setDeviceName(known);
    return true;
}

bool RegistryEntryDecoder::readDeviceName(const ArchiveValueView &table, DeviceNameTexts &texts)
{
    return table.forEachMember([&texts](const QString &key, const ArchiveValueView &value) {
        constexpr std::array keys{DeviceNameKey::model, DeviceNameKey::vendor,
                                  DeviceNameKey::className};
        const QString *const text = value.string();
        if (!text || text->size() > DeviceName::maxSize)
            return false;
        const auto found = std::find(keys.begin(), keys.end(), key);
        if (found != keys.end())
            texts[static_cast<std::size_t>(found - keys.begin())] = text;
        return true;
    });
}

bool RegistryEntryDecoder::decodeProperties(ArchiveReference reference)
{
    const ObjectDecoder object = unarchiver_.object(reference);
    TavRegistryEntry &entry = *entries_[reference.index];
    if (versionOf(object) < TavRegistryEntry::classVersion)
        return decodeOldProperties(object, entry);
    const auto root = object.decodeReference(EntryKey::properties, ArchiveClassName::property);
    auto properties = root ? properties_.decode(*root, object.reference(), entry)
                           : PropertyTreeDecoder::Decoded();
    if (properties.tree)
        entry.setTree(std::move(properties.tree));
    else
        entry.setTable(properties.table, QDateTime());
    return entry.hasProperties() || fail("properties", nullptr);
}

bool RegistryEntryDecoder::finish()
{
    check(childLinks_);
    check(parentLinks_);
    return !unarchiver_.error();
}

void RegistryEntryDecoder::check(const LinkChecker &links)
{
    switch (links.check(LinkChecker::pathLimit(entryCount_))) {
    case LinkChecker::Finding::Sound:
        break;
    case LinkChecker::Finding::Cycle:
        unarchiver_.fail(QStringLiteral("an entry is its own ancestor"), {});
        break;
    case LinkChecker::Finding::TooManyPaths:
        unarchiver_.fail(QStringLiteral("the entries have more paths than can be followed"), {});
        break;
    }
}

bool RegistryEntryDecoder::decodeDates(const ObjectDecoder &object, EntryRecord &facts)
{
    facts.dateDiscovered = object.decodeDate(EntryKey::dateDiscovered);
    if (!succeeded("dateDiscovered"))
        return false;
    facts.dateLastUpdated = object.decodeDate(EntryKey::dateLastUpdated);
    if (!succeeded("dateLastUpdated"))
        return false;
    facts.dateTerminated = object.decodeDate(EntryKey::dateTerminated);
    return succeeded("dateTerminated");
}

bool RegistryEntryDecoder::decodeNames(const ObjectDecoder &object, EntryRecord &facts)
{
    constexpr auto table = ArchiveKind::Dictionary | ArchiveKind::String;
    facts.bundleID = object.decodeString(EntryKey::bundleID);
    if (!isDecoded(facts.bundleID, "bundleID"))
        return false;
    if (!decodeInheritance(object, facts))
        return false;
    facts.name = object.decodeString(EntryKey::name);
    if (!isDecoded(facts.name, "name"))
        return false;
    if (!setNames(facts.namesInPlanes, object.valueView(EntryKey::namesInPlanes, table)))
        return fail("namesInPlanes", "not a table of names");
    facts.location = object.decodeString(EntryKey::location);
    if (!isDecoded(facts.location, "location"))
        return false;
    return (setNames(facts.locationsInPlanes,
                     object.valueView(EntryKey::locationsInPlanes, table)) ||
            fail("location", "not a table of locations")) &&
           decodeKernelPath(object, facts);
}

bool RegistryEntryDecoder::decodeKernelPath(const ObjectDecoder &object, EntryRecord &facts)
{
    const QString path = object.decodeString(EntryKey::kernelPath);
    if (path.size() <= EntryRecord::maxKernelPath)
        facts.kernelPath = CompactString(path);
    return succeeded(EntryKey::kernelPath.data());
}

bool RegistryEntryDecoder::decodeInheritance(const ObjectDecoder &object, EntryRecord &facts)
{
    const ArchiveValueView list =
        object.valueView(EntryKey::inheritance, ArchiveKind::List | ArchiveKind::String);
    identities_.clear();
    const auto note = [this](const ArchiveValueView &name) {
        identities_.push_back(name.identity());
        return name.string() != nullptr;
    };
    if (!list.isList() || !list.forEachElement(note) || identities_.empty())
        return decodeNewInheritance(object, facts);
    Inheritance &known = inheritances_[identities_.front()];
    if (known.identities != identities_) {
        if (!decodeNewInheritance(object, facts))
            return false;
        known = {identities_, facts.inheritance};
    }
    facts.inheritance = known.classes;
    return true;
}

bool RegistryEntryDecoder::decodeNewInheritance(const ObjectDecoder &object, EntryRecord &facts)
{
    facts.inheritance = object.decodeStrings(EntryKey::inheritance).value_or(QStringList());
    if (!succeeded("inheritance"))
        return false;
    return SnapshotLimits::allowClasses(facts.inheritance) ||
           fail("inheritance", "too many classes, or names that are too long");
}

// Deliberate: relatives share the log message of the location.
bool RegistryEntryDecoder::decodeRelations(const ObjectDecoder &object, EntryRecord &facts)
{
    constexpr auto table = ArchiveKind::Dictionary | ArchiveKind::List | ArchiveKind::String;
    const auto decode = [&](PlaneMap<EntryList> &relatives, LinkChecker &links, QLatin1String key) {
        return setRelatives(relatives, links, object.reference().index,
                            object.valueView(key, table, ArchiveClassName::entry)) ||
               fail("location", "not a table of entries of the store");
    };
    return decode(facts.childrenInPlanes, childLinks_, EntryKey::childrenInPlanes) &&
           decode(facts.parentsInPlanes, parentLinks_, EntryKey::parentsInPlanes);
}

bool RegistryEntryDecoder::decodeCountsAndFlags(const ObjectDecoder &object, EntryRecord &facts)
{
    facts.entryTag = object.decodeInteger<quint64>(EntryKey::entryTag);
    if (!succeeded(EntryKey::entryTag.data()))
        return false;
    facts.busyCount = object.decodeInteger<quint32>(EntryKey::busyCount);
    if (!succeeded(EntryKey::busyCount.data()))
        return false;
    facts.kernelRetainCount = object.decodeInteger<quint32>(EntryKey::kernelRetainCount);
    if (!succeeded(EntryKey::kernelRetainCount.data()))
        return false;
    for (const auto &[flag, key] :
         {std::pair(EntryRecord::RegistryRoot, EntryKey::isRegistryRoot),
          std::pair(EntryRecord::ConformsToDxService, EntryKey::conformsToDxService),
          std::pair(EntryRecord::Registered, EntryKey::isRegistered),
          std::pair(EntryRecord::Matched, EntryKey::isMatched),
          std::pair(EntryRecord::Active, EntryKey::isActive)}) {
        facts.setFlag(flag, object.decodeBoolean(key));
        if (!succeeded(key.data()))
            return false;
    }
    return true;
}

bool RegistryEntryDecoder::decodeState(const ObjectDecoder &object, EntryRecord &facts)
{
    const auto store = object.decodeReference(EntryKey::dataStore, ArchiveClassName::dataStore);
    if (store != KeyedUnarchiver::root)
        return fail("dataStore", "the entry does not belong to the store");
    const auto state = object.decodeInteger<quint32>(EntryKey::registryState);
    if (!succeeded(EntryKey::registryState.data()))
        return false;
    if (state > RegistryStateTerminated)
        return fail(EntryKey::registryState.data(), "unknown state of an entry");
    facts.registryState = static_cast<RegistryState>(state);
    return true;
}

bool RegistryEntryDecoder::decodeOldState(const ObjectDecoder &object, EntryRecord &facts)
{
    if (object.decodeBoolean(EntryKey::isNew))
        facts.registryState = RegistryStateNew;
    if (!succeeded(EntryKey::isNew.data()))
        return false;
    if (object.decodeBoolean(EntryKey::terminationAcknowledged))
        facts.registryState = RegistryStateTerminated;
    return succeeded(EntryKey::terminationAcknowledged.data());
}

// Deliberate: an entry without readable bytes has no properties.
bool RegistryEntryDecoder::decodeOldProperties(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    if (object.containsData(EntryKey::properties))
        entry.setTable(PropertyListReader::read(object.decodeData(EntryKey::properties)),
                       QDateTime::currentDateTimeUtc());
    return succeeded("properties");
}

bool RegistryEntryDecoder::setNames(NamesByPlane &names, const ArchiveValueView &value)
{
    if (!value.isDictionary())
        return value.isAbsent() && !unarchiver_.error();
    NamesByPlane::Strings planes;
    NamesByPlane::Strings texts;
    for (const auto &[plane, member] : sortedByKey(value)) {
        const QString *const name = member.string();
        if (!name || !SnapshotLimits::allowName(*name) || !SnapshotLimits::allowName(*plane))
            return false;
        planes.emplace_back(*plane);
        texts.emplace_back(*name);
    }
    names.assign(std::move(planes), texts);
    return true;
}

bool RegistryEntryDecoder::setRelatives(PlaneMap<EntryList> &table, LinkChecker &links,
                                        quint32 entry, const ArchiveValueView &value)
{
    if (!value.isDictionary())
        return value.isAbsent() && !unarchiver_.error();
    const Members planes = sortedByKey(value);
    table.reserve(planes.size());
    for (const auto &[plane, list] : planes) {
        if (!list.isList() || !SnapshotLimits::allowName(*plane) || !readRelatives(list))
            return false;
        links.add(*plane, entry, relatives_);
        EntryList::Entries entries;
        entries.reserve(relatives_.size());
        for (const quint32 relative : relatives_)
            entries.push_back(entries_[relative]);
        table[*plane].setOrder(std::move(entries));
    }
    return true;
}

// Into relatives_. False unless all are different entries of the store.
bool RegistryEntryDecoder::readRelatives(const ArchiveValueView &list)
{
    ++listCount_;
    relatives_.clear();
    return list.forEachElement([this](const ArchiveValueView &element) {
        const auto reference = element.reference();
        if (!reference || reference->index >= entries_.size() || !entries_[reference->index] ||
            lastList_[reference->index] == listCount_)
            return false;
        lastList_[reference->index] = listCount_;
        relatives_.push_back(reference->index);
        return true;
    });
}

bool RegistryEntryDecoder::isDecoded(const QString &name, const char *what)
{
    return succeeded(what) &&
           (SnapshotLimits::allowName(name) || fail(what, "the name is too long"));
}

bool RegistryEntryDecoder::succeeded(const char *what)
{
    if (!unarchiver_.error())
        return true;
    logUnableToDecode(what, unarchiver_);
    return false;
}

bool RegistryEntryDecoder::fail(const char *what, const char *reason)
{
    if (reason)
        unarchiver_.fail(QLatin1String(reason), {});
    logUnableToDecode(what, unarchiver_);
    return false;
}

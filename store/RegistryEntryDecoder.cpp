#include "store/RegistryEntryDecoder.h"

#include "store/ArchiveKeys.h"
#include "store/DecodingLog.h"
#include "store/PropertyListReader.h"
#include "store/SnapshotLimits.h"

namespace {
using Members = std::vector<std::pair<const QString *, ArchiveValueView>>;

// Plane tables are sorted, and filling them in another order takes time with the square of the
// planes.
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
    TavRegistryEntry &entry = *entries_[reference.index];
    ++entryCount_;
    const qint32 version = versionOf(object);
    if (version > TavRegistryEntry::classVersion || !succeeded(EntryKey::version.data()))
        return false;
    if (!decodeDates(object, entry) || !decodeNames(object, entry) ||
        !decodeRelations(object, entry) || !decodeCountsAndFlags(object, entry))
        return false;
    return version == TavRegistryEntry::classVersion ? decodeState(object, entry)
                                                     : decodeOldState(object, entry);
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

void RegistryEntryDecoder::check(const PlaneLinks &links)
{
    switch (links.check(PlaneLinks::pathLimit(entryCount_))) {
    case PlaneLinks::Finding::Sound:
        break;
    case PlaneLinks::Finding::Cycle:
        unarchiver_.fail(QStringLiteral("an entry is its own ancestor"), {});
        break;
    case PlaneLinks::Finding::TooManyPaths:
        unarchiver_.fail(QStringLiteral("the entries have more paths than can be followed"), {});
        break;
    }
}

bool RegistryEntryDecoder::decodeDates(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    entry.dateDiscovered_ = object.decodeDate(EntryKey::dateDiscovered);
    if (!succeeded("dateDiscovered"))
        return false;
    entry.dateLastUpdated_ = object.decodeDate(EntryKey::dateLastUpdated);
    if (!succeeded("dateLastUpdated"))
        return false;
    entry.dateTerminated_ = object.decodeDate(EntryKey::dateTerminated);
    return succeeded("dateTerminated");
}

bool RegistryEntryDecoder::decodeNames(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    constexpr auto table = ArchiveKind::Dictionary | ArchiveKind::String;
    entry.bundleID_ = object.decodeString(EntryKey::bundleID);
    if (!isDecoded(entry.bundleID_, "bundleID"))
        return false;
    if (!decodeInheritance(object, entry))
        return false;
    entry.name_ = object.decodeString(EntryKey::name);
    if (!isDecoded(entry.name_, "name"))
        return false;
    if (!setNames(entry.namesInPlanes_, object.valueView(EntryKey::namesInPlanes, table)))
        return fail("namesInPlanes", "not a table of names");
    entry.location_ = object.decodeString(EntryKey::location);
    if (!isDecoded(entry.location_, "location"))
        return false;
    return setNames(entry.locationsInPlanes_,
                    object.valueView(EntryKey::locationsInPlanes, table)) ||
           fail("location", "not a table of locations");
}

bool RegistryEntryDecoder::decodeInheritance(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    const ArchiveValueView list =
        object.valueView(EntryKey::inheritance, ArchiveKind::List | ArchiveKind::String);
    identities_.clear();
    const auto note = [this](const ArchiveValueView &name) {
        identities_.push_back(name.identity());
        return name.string() != nullptr;
    };
    if (!list.isList() || !list.forEachElement(note) || identities_.empty())
        return decodeNewInheritance(object, entry);
    Inheritance &known = inheritances_[identities_.front()];
    if (known.identities != identities_) {
        if (!decodeNewInheritance(object, entry))
            return false;
        known = {identities_, entry.inheritance_};
    }
    entry.inheritance_ = known.classes;
    return true;
}

bool RegistryEntryDecoder::decodeNewInheritance(const ObjectDecoder &object,
                                                TavRegistryEntry &entry)
{
    entry.inheritance_ = object.decodeStrings(EntryKey::inheritance).value_or(QStringList());
    if (!succeeded("inheritance"))
        return false;
    return SnapshotLimits::allowClasses(entry.inheritance_) ||
           fail("inheritance", "too many classes, or names that are too long");
}

// Relatives have no message of their own; they share the one of the location.
bool RegistryEntryDecoder::decodeRelations(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    constexpr auto table = ArchiveKind::Dictionary | ArchiveKind::List | ArchiveKind::String;
    const auto decode = [&](PlaneTable<EntryList> &relatives, PlaneLinks &links,
                            QLatin1String key) {
        return setRelatives(relatives, links, object.reference().index,
                            object.valueView(key, table, ArchiveClassName::entry)) ||
               fail("location", "not a table of entries of the store");
    };
    return decode(entry.childrenInPlanes_, childLinks_, EntryKey::childrenInPlanes) &&
           decode(entry.parentsInPlanes_, parentLinks_, EntryKey::parentsInPlanes);
}

bool RegistryEntryDecoder::decodeCountsAndFlags(const ObjectDecoder &object,
                                                TavRegistryEntry &entry)
{
    entry.entryTag_ = object.decodeInteger<quint64>(EntryKey::entryTag);
    if (!succeeded(EntryKey::entryTag.data()))
        return false;
    entry.busyCount_ = object.decodeInteger<quint32>(EntryKey::busyCount);
    if (!succeeded(EntryKey::busyCount.data()))
        return false;
    entry.kernelRetainCount_ = object.decodeInteger<quint32>(EntryKey::kernelRetainCount);
    if (!succeeded(EntryKey::kernelRetainCount.data()))
        return false;
    using Entry = TavRegistryEntry;
    for (const auto &[flag, key] :
         {std::pair(Entry::RegistryRoot, EntryKey::isRegistryRoot),
          std::pair(Entry::ConformsToDxService, EntryKey::conformsToDxService),
          std::pair(Entry::Registered, EntryKey::isRegistered),
          std::pair(Entry::Matched, EntryKey::isMatched),
          std::pair(Entry::Active, EntryKey::isActive)}) {
        entry.setFlag(flag, object.decodeBoolean(key));
        if (!succeeded(key.data()))
            return false;
    }
    return true;
}

bool RegistryEntryDecoder::decodeState(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    const auto store = object.decodeReference(EntryKey::dataStore, ArchiveClassName::dataStore);
    if (store != KeyedUnarchiver::root)
        return fail("dataStore", "the entry belongs to no or another store");
    const auto state = object.decodeInteger<quint32>(EntryKey::registryState);
    if (!succeeded(EntryKey::registryState.data()))
        return false;
    if (state > RegistryStateTerminated)
        return fail(EntryKey::registryState.data(), "unknown state of an entry");
    entry.registryState_ = static_cast<RegistryState>(state);
    return true;
}

bool RegistryEntryDecoder::decodeOldState(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    if (object.decodeBoolean(EntryKey::isNew))
        entry.registryState_ = RegistryStateNew;
    if (!succeeded(EntryKey::isNew.data()))
        return false;
    if (object.decodeBoolean(EntryKey::terminationAcknowledged))
        entry.registryState_ = RegistryStateTerminated;
    return succeeded(EntryKey::terminationAcknowledged.data());
}

// An entry without readable bytes simply has no properties.
bool RegistryEntryDecoder::decodeOldProperties(const ObjectDecoder &object, TavRegistryEntry &entry)
{
    if (object.containsData(EntryKey::properties))
        entry.setTable(PropertyListReader::read(object.decodeData(EntryKey::properties)),
                       QDateTime::currentDateTimeUtc());
    return succeeded("properties");
}

bool RegistryEntryDecoder::setNames(PlaneNames &names, const ArchiveValueView &value)
{
    if (!value.isDictionary())
        return value.isAbsent() && !unarchiver_.error();
    PlaneNames::Strings planes;
    PlaneNames::Strings texts;
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

bool RegistryEntryDecoder::setRelatives(PlaneTable<EntryList> &table, PlaneLinks &links,
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

// Into relatives_: entries of the store, none of them twice.
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
    return succeeded(what) && (SnapshotLimits::allowName(name) || fail(what, "too long a name"));
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

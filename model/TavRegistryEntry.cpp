// SPDX-License-Identifier: Apache-2.0
#include "model/TavRegistryEntry.h"

#include "model/EntryStore.h"
#include "model/ModelLogging.h"

namespace {
const PropertyClass *propertyClass = nullptr;

template<class Neighbours>
EntrySet reachable(const TavRegistryEntry &start, Neighbours neighbours)
{
    EntrySet found;
    std::vector<const TavRegistryEntry *> pending{&start};
    while (!pending.empty()) {
        const TavRegistryEntry *entry = pending.back();
        pending.pop_back();
        for (TavRegistryEntry *neighbour : neighbours(*entry)) {
            const auto before = found.size();
            found.insert(neighbour);
            if (found.size() != before)
                pending.push_back(neighbour);
        }
    }
    return found;
}
} // namespace

TavRegistryEntry::~TavRegistryEntry() = default;

void TavRegistryEntry::setPropertyClass(const PropertyClass &nodeClass)
{
    propertyClass = &nodeClass;
}

const PropertyClass &TavRegistryEntry::currentPropertyClass()
{
    return propertyClass ? *propertyClass : TavRegistryProperty::staticPropertyClass();
}

EntryRef TavRegistryEntry::create(RegistryObject object, EntryStore &dataStore)
{
    EntryRef entry = createEmpty();
    return entry->initWithDxRegistryEntry(object, dataStore) ? entry : nullptr;
}

EntryRef TavRegistryEntry::createEmpty()
{
    return std::make_shared<TavRegistryEntry>(Private());
}

void TavRegistryEntry::_setDataStore(EntryStore *store)
{
    dataStore_ = store;
    number_ = store ? store->takeEntryNumber() : 0;
}

void TavRegistryEntry::addChild(TavRegistryEntry &child, const QString &plane)
{
    facts_.childrenInPlanes[plane].add(&child);
    child.addParent(*this, plane);
}

void TavRegistryEntry::addParent(TavRegistryEntry &parent, const QString &plane)
{
    facts_.parentsInPlanes[plane].add(&parent);
}

void TavRegistryEntry::clearParentChildRelationships()
{
    // Keeps the lists: most entries return.
    for (auto &item : facts_.parentsInPlanes)
        item.value.clear();
}

void TavRegistryEntry::addAllChildrenTo(EntrySet &children) const
{
    for (const auto &item : facts_.childrenInPlanes) {
        for (TavRegistryEntry *const child : item.value.entries())
            children.insert(child);
    }
}

void TavRegistryEntry::addAllParentsTo(EntrySet &parents) const
{
    for (const auto &item : facts_.parentsInPlanes) {
        for (TavRegistryEntry *const parent : item.value.entries())
            parents.insert(parent);
    }
}

bool TavRegistryEntry::areChildrenInOrder() const
{
    return std::all_of(
        facts_.childrenInPlanes.begin(), facts_.childrenInPlanes.end(), [](const auto &item) {
            const EntryList::Entries &children = item.value.entries();
            return std::is_sorted(children.begin(), children.end(),
                                  [&](TavRegistryEntry *a, TavRegistryEntry *b) {
                                      return compareForPlane(*a, *b, item.plane()) < 0;
                                  });
        });
}

void TavRegistryEntry::forgetParents(const EntrySet &parents)
{
    for (auto &item : facts_.parentsInPlanes)
        item.value.removeIf([&](TavRegistryEntry *parent) { return parents.contains(parent); });
}

void TavRegistryEntry::clearTerminatedChildren()
{
    for (auto &item : facts_.childrenInPlanes)
        item.value.removeIf([](TavRegistryEntry *child) { return !child->DxRegistryEntry(); });
}

void TavRegistryEntry::leaveStore()
{
    _setDataStore(nullptr);
    handle_.reset();
    facts_.childrenInPlanes.clear();
    facts_.parentsInPlanes.clear();
}

void TavRegistryEntry::forgetLinksTo(const EntrySet &leaving)
{
    const auto isLeaving = [&](TavRegistryEntry *entry) { return leaving.contains(entry); };
    for (auto &item : facts_.childrenInPlanes)
        item.value.removeIf(isLeaving);
    for (auto &item : facts_.parentsInPlanes)
        item.value.removeIf(isLeaving);
}

void TavRegistryEntry::noteTerminatedAtDate(const QDateTime &date, bool immediate)
{
    facts_.dateTerminated = date;
    handle_.reset();
    if (immediate)
        facts_.registryState = RegistryStateTerminated;
}

void TavRegistryEntry::clearIsNew()
{
    if (facts_.registryState == RegistryStateNew)
        facts_.registryState = RegistryStateUnchanged;
    if (properties_)
        properties_->clearIsNew();
}

QDateTime TavRegistryEntry::dateTerminated() const
{
    return facts_.registryState == RegistryStateTerminated ? facts_.dateTerminated : QDateTime();
}

QString TavRegistryEntry::bundlePath() const
{
    RegistryService *service = dataStore_ ? dataStore_->bundleService() : nullptr;
    if (!service || facts_.bundleID.isNull())
        return {};
    return service->bundleURLForIdentifier(facts_.bundleID);
}

QString TavRegistryEntry::nameInPlane(const QString &plane) const
{
    const CompactString *name = facts_.namesInPlanes.find(plane);
    return name ? name->toOwner() : facts_.name;
}

QString TavRegistryEntry::locationInPlane(const QString &plane) const
{
    const CompactString *location = facts_.locationsInPlanes.find(plane);
    return location ? location->toOwner() : facts_.location;
}

QString TavRegistryEntry::nameAtLocationInPlane(const QString &plane) const
{
    const QString location = locationInPlane(plane);
    return location.isNull() ? nameInPlane(plane) : nameInPlane(plane) + u'@' + location;
}

QString TavRegistryEntry::DxcoreClass() const
{
    return facts_.inheritance.value(0);
}

QStringList TavRegistryEntry::reversedInheritance() const
{
    return QStringList(facts_.inheritance.rbegin(), facts_.inheritance.rend());
}

QString TavRegistryEntry::inheritanceString() const
{
    return facts_.inheritance.join(QLatin1String(" : "));
}

bool TavRegistryEntry::isKindOfDxcoreClass(const QString &className, bool substring) const
{
    return std::any_of(facts_.inheritance.begin(), facts_.inheritance.end(),
                       [&](const QString &candidate) {
                           return substring ? candidate.contains(className, Qt::CaseInsensitive)
                                            : candidate == className;
                       });
}

namespace {
const EntryList::Entries &entriesOf(const PlaneMap<EntryList> &table, const QString &plane)
{
    static const EntryList::Entries none;
    const EntryList *list = table.find(plane);
    return list ? list->entries() : none;
}
} // namespace

const EntryList::Entries &TavRegistryEntry::childrenInPlane(const QString &plane) const
{
    return entriesOf(facts_.childrenInPlanes, plane);
}

const EntryList::Entries &TavRegistryEntry::parentsInPlane(const QString &plane) const
{
    return entriesOf(facts_.parentsInPlanes, plane);
}

EntryList::Entries TavRegistryEntry::childrenWithNameAtLocation(const QString &nameAtLocation,
                                                                const QString &plane) const
{
    EntryList::Entries found;
    for (TavRegistryEntry *child : childrenInPlane(plane)) {
        if (child->nameAtLocationInPlane(plane) == nameAtLocation)
            found.push_back(child);
    }
    return found;
}

std::size_t TavRegistryEntry::numParents() const
{
    std::size_t count = 0;
    for (const auto &item : facts_.parentsInPlanes)
        count += item.value.entries().size();
    return count;
}

EntrySet TavRegistryEntry::allAncestorsInPlane(const QString &plane) const
{
    return reachable(*this, [&](const TavRegistryEntry &entry) -> const EntryList::Entries & {
        return entry.parentsInPlane(plane);
    });
}

EntrySet TavRegistryEntry::allDescendantsInPlane(const QString &plane) const
{
    return reachable(*this, [&](const TavRegistryEntry &entry) -> const EntryList::Entries & {
        return entry.childrenInPlane(plane);
    });
}

void TavRegistryEntry::printName(const QString &plane) const
{
    qCInfo(modelLog, "%ls ", qUtf16Printable(nameAtLocationInPlane(plane)));
}

int TavRegistryEntry::compareForPlane(const TavRegistryEntry &a, const TavRegistryEntry &b,
                                      const QString &plane)
{
    const int order =
        a.nameAtLocationInPlane(plane).compare(b.nameAtLocationInPlane(plane), Qt::CaseInsensitive);
    if (order != 0)
        return order < 0 ? -1 : 1;
    return a.facts_.entryTag < b.facts_.entryTag   ? -1
           : a.facts_.entryTag > b.facts_.entryTag ? 1
                                                   : 0;
}

void TavRegistryEntry::sortForPlane(EntryList::Entries &entries, const QString &plane)
{
    if (entries.size() < 2)
        return;
    struct Keyed
    {
        QString key;
        TavRegistryEntry *entry;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(entries.size());
    for (TavRegistryEntry *entry : entries)
        keyed.push_back({entry->nameAtLocationInPlane(plane), entry});
    std::sort(keyed.begin(), keyed.end(), [](const Keyed &a, const Keyed &b) {
        const int order = a.key.compare(b.key, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.entry->facts_.entryTag < b.entry->facts_.entryTag;
    });
    std::transform(keyed.begin(), keyed.end(), entries.begin(),
                   [](const Keyed &item) { return item.entry; });
}

EntryList::Entries TavRegistryEntry::sortedArrayForPlane(EntryList::Entries entries,
                                                         const QString &plane)
{
    sortForPlane(entries, plane);
    return entries;
}

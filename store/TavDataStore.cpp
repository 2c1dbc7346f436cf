// SPDX-License-Identifier: Apache-2.0
#include "store/TavDataStore.h"

#include "model/RegistryOrder.h"
#include "platform/runloop/Disposal.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/DeviceNameLookup.h"
#include "store/StoreLogging.h"

namespace {
QString architectureName(quint32 processorType)
{
    switch (processorType) {
    case 7:
        return QStringLiteral("i386");
    case 0x1000007:
        return QStringLiteral("x86_64");
    default:
        return QStringLiteral("<Unknown>");
    }
}
} // namespace

TavDataStore::TavDataStore() = default;

TavDataStore::~TavDataStore()
{
    life_.reset();
    deviceNameLookup_.reset();
    endNotifications();
    const bool isLarge = registryEntries_.size() >= Disposal::worthwhile;
    // Entries that only the store holds need no cleaning up.
    for (const EntryRef &entry : registryEntries_) {
        if (isLive_ || !isLarge || entry.use_count() > 1 || entry->isTreeHeld())
            entry->leaveStore();
    }
    if (isLarge)
        Disposal::later(std::make_shared<std::vector<EntryRef>>(std::move(registryEntries_)));
}

std::unique_ptr<TavDataStore>
TavDataStore::initFromDxRegistry(RegistryService &service,
                                 std::shared_ptr<TavDataStoreDelegate> delegate)
{
    std::unique_ptr<TavDataStore> store(new TavDataStore);
    store->isLive_ = true;
    store->service_ = store->bundleService_ = &service;
    // Deliberate: set before the first snapshot, so that its failure is reported, too.
    store->delegate_ = std::move(delegate);
    store->readMachineFacts();
    store->_registerForDxcoreNotifications();
    if (!store->update())
        return nullptr;
    for (const EntryRef &entry : store->registryEntries_)
        entry->clearIsNew();
    return store;
}

std::unique_ptr<TavDataStore> TavDataStore::captureOnce(RegistryService &service)
{
    std::unique_ptr<TavDataStore> store(new TavDataStore);
    store->isLive_ = true;
    store->service_ = store->bundleService_ = &service;
    store->readMachineFacts();
    if (!store->update())
        return nullptr;
    for (const EntryRef &entry : store->registryEntries_)
        entry->clearIsNew();
    return store;
}

void TavDataStore::readMachineFacts()
{
    const HostInformation host = service_->hostInformation();
    hostName_ = host.computerName.isNull() ? QStringLiteral("Unknown") : host.computerName;
    archName_ = architectureName(host.processorType);
    byteOrder_ = host.byteOrder;
}

void TavDataStore::setDelegate(std::shared_ptr<TavDataStoreDelegate> delegate)
{
    delegate_ = std::move(delegate);
}

TavRegistryEntry *TavDataStore::registryRoot() const
{
    return registryEntries_.empty() ? nullptr : registryEntries_.front().get();
}

QStringList TavDataStore::incompleteObjects() const
{
    const TavRegistryEntry *const root = registryRoot();
    const TavRegistryProperty *const table =
        root && root->properties()
            ? root->properties()->childWithName(QStringLiteral("DxIncompleteObjects"))
            : nullptr;
    QStringList paths;
    if (table) {
        for (const TavRegistryProperty *object : table->children())
            paths.append(object->name());
    }
    return paths;
}

bool TavDataStore::update()
{
    return updateAfter(&RegistryService::prepare);
}

bool TavDataStore::updateTryingAgain()
{
    pass_.forget();
    return updateAfter(&RegistryService::retryWhatDidNotAnswer);
}

bool TavDataStore::updateAfter(bool (RegistryService::*prepare)())
{
    if (!isLive_) {
        qCInfo(storeLog, "Attempt to update a non-live data store\n");
        return false;
    }
    const QDateTime began = QDateTime::currentDateTimeUtc();
    const std::weak_ptr<void> life = life_; // an observer may close the document
    if (!(service_->*prepare)() || life.expired())
        return false;
    ++directUpdates_;
    readRegistry(began);
    return true;
}

// Deliberate: uses the planes that the root had at the last update, so a new plane shows at the
// second one; and the parents of entries below a terminated entry are not reread, so the inside of
// an unplugged subtree loses its paths.
void TavDataStore::readRegistry(const QDateTime &began)
{
    lastUpdateDate_ = began;
    for (const EntryRef &entry : registryEntries_) {
        if (entry->registryState() == RegistryStateNew)
            entry->clearIsNew();
    }
    updatePlanes();
    pass_.run(*service_, registryEntries_, registryPlanes_);
    locator_.reset();
    isUpToDate_ = true;
    announceUpdate();
}

void TavDataStore::announceUpdate()
{
    const std::weak_ptr<void> life = life_; // an observer may close the document
    post(DataStoreNotifications::changed);
    if (life.expired() || !hasPendingTerminations_)
        return;
    post(DataStoreNotifications::objectsTerminated);
    if (!life.expired())
        hasPendingTerminations_ = false;
}

void TavDataStore::updatePlanes()
{
    const TavRegistryEntry *root = registryEntryForDxRegistryEntry(0, true);
    const TavRegistryProperty *table = root ? root->properties() : nullptr;
    const TavRegistryProperty *planes =
        table ? table->childWithName(QStringLiteral("DxRegistryPlanes")) : nullptr;
    if (!planes || planes->numberOfChildren() == 0) {
        _fatalDxRegistryError();
        return;
    }
    QStringList names;
    for (const TavRegistryProperty *plane : planes->children())
        names.append(plane->name());
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        return compareRegistryPlaneForUI(a, b) < 0;
    });
    registryPlanes_ = names;
}

void TavDataStore::updateObject(TavRegistryEntry &entry)
{
    const EntryRef held = entry.shared_from_this();
    const std::weak_ptr<void> life = life_; // an observer may close the document
    const bool isPrepared =
        !service_ || !entry.DxRegistryEntry() || service_->prepareObject(entry.DxRegistryEntry());
    if (isPrepared && !life.expired())
        entry.updateIsSingle(true);
}

bool TavDataStore::mayReadAttribute(const TavRegistryEntry &entry, const QString &attribute) const
{
    return service_ && entry.DxRegistryEntry() &&
           service_->mayReadOnRequest(entry.DxRegistryEntry(), attribute);
}

void TavDataStore::readAttribute(TavRegistryEntry &entry, const QString &attribute,
                                 std::function<void()> then)
{
    if (!mayReadAttribute(entry, attribute))
        return;
    const auto ready = [then = std::move(then), life = std::weak_ptr<void>(life_),
                        asked = entry.weak_from_this()] {
        const EntryRef held = life.expired() ? nullptr : asked.lock();
        if (held)
            held->updateIsSingle(true);
        if (!life.expired()) // an observer may have closed the document
            then();
    };
    service_->readOnRequest(entry.DxRegistryEntry(), attribute, ready);
}

void TavDataStore::lookUpDeviceNames()
{
    if (!deviceNameLookup_)
        deviceNameLookup_ = std::make_unique<DeviceNameLookup>(*this);
    deviceNameLookup_->start();
}

void TavDataStore::readWhole(std::span<TavRegistryEntry *const> entries)
{
    if (!isLive_)
        return;
    std::vector<RegistryObject> objects;
    for (const TavRegistryEntry *const entry : entries)
        objects.push_back(entry->DxRegistryEntry());
    service_->readWhole(objects);
    for (TavRegistryEntry *const entry : entries)
        entry->readAttributesAndProperties();
    locator_.reset();
}

std::vector<TavRegistryEntry *> TavDataStore::findReadingWhole(const QString &name)
{
    std::vector<TavRegistryEntry *> found = locator().find(name);
    TavRegistryEntry *const owner = found.empty() ? locator().possibleOwner(name) : nullptr;
    if (!owner)
        return found;
    readWhole(std::span(&owner, 1));
    return locator().find(name);
}

void TavDataStore::lookUpDeviceNamesNow()
{
    DeviceNameLookup::run(*this);
}

void TavDataStore::lookUpDeviceNamesNow(std::span<TavRegistryEntry *const> entries)
{
    DeviceNameLookup::run(*this, entries);
}

void TavDataStore::noteObjectChanged(TavRegistryEntry &entry)
{
    const EntryRef held = entry.shared_from_this(); // an observer may drop it
    locator_.reset();
    NotificationCenter::defaultCenter().post(DataStoreNotifications::objectChanged, &entry);
}

void TavDataStore::removeClient(const void *client)
{
    if (!client)
        return;
    for (const EntryRef &entry : registryEntries_)
        entry->removeClient(client);
}

TavRegistryEntry *TavDataStore::registryEntryForDxRegistryEntry(RegistryObject object,
                                                                bool createIfNeeded)
{
    if (!service_)
        return nullptr;
    RegistryHandle root; // for this look-up only
    const bool isRoot = object == 0;
    if (isRoot) {
        root = RegistryHandle::adopt(*service_, service_->rootEntry());
        object = root.get();
        if (!object)
            _fatalDxRegistryError();
    }
    if (TavRegistryEntry *known = findEntry(object))
        return known;
    return createIfNeeded ? _registryEntryWithDxRegistryEntry(object, isRoot) : nullptr;
}

TavRegistryEntry *TavDataStore::entryWithTag(quint64 tag) const
{
    if (!isLive_ && !std::exchange(isArchiveIndexed_, true)) {
        entriesByTag_.clear();
        for (const EntryRef &entry : registryEntries_) {
            if (!entriesByTag_.contains(entry->entryTag())) // a hostile snapshot may repeat it
                entriesByTag_.insert(entry->entryTag(), entry.get());
        }
    }
    return entriesByTag_.value(tag);
}

void TavDataStore::forgetTags()
{
    entriesByTag_.clear();
    isArchiveIndexed_ = false;
}

TavRegistryEntry *TavDataStore::findEntry(RegistryObject object) const
{
    quint64 tag = 0;
    if (service_->hasEntryIDs() && service_->entryID(object, tag) == RegistryStatus::Success)
        return entriesByTag_.value(tag);
    // Only the service can compare handles, so there is no index.
    const auto found =
        std::find_if(registryEntries_.begin(), registryEntries_.end(), [&](const EntryRef &entry) {
            return entry->DxRegistryEntry() &&
                   service_->objectsEqual(entry->DxRegistryEntry(), object);
        });
    return found != registryEntries_.end() ? found->get() : nullptr;
}

TavRegistryEntry *TavDataStore::_registryEntryWithDxRegistryEntry(RegistryObject object,
                                                                  bool isRoot)
{
    EntryRef entry = TavRegistryEntry::create(object, *this);
    if (!entry)
        return nullptr;
    entry->setIsRegistryRoot(isRoot);
    entriesByTag_.emplace(entry->entryTag(), entry.get());
    registryEntries_.push_back(std::move(entry));
    locator_.reset();
    return registryEntries_.back().get();
}

void TavDataStore::clearTerminatedObjects()
{
    EntrySet leaving;
    for (const EntryRef &entry : registryEntries_) {
        entry->clearTerminatedChildren();
        if (entry->hasTerminationDate())
            leaving.insert(entry.get());
    }
    if (leaving.isEmpty())
        return;
    dropEntries(leaving);
    post(DataStoreNotifications::clearedTerminatedObjects);
}

void TavDataStore::dropEntries(const EntrySet &leaving)
{
    const std::size_t countBefore = registryEntries_.size();
    locator_.reset();
    const auto isLeaving = [&](const EntryRef &entry) { return leaving.contains(entry.get()); };
    for (const EntryRef &entry : registryEntries_) {
        if (isLeaving(entry)) {
            entriesByTag_.remove(entry->entryTag());
            entry->leaveStore();
        } else {
            entry->forgetLinksTo(leaving);
        }
    }
    std::erase_if(registryEntries_, isLeaving);
    restartEntryNumbers();
    for (const EntryRef &entry : registryEntries_)
        entry->setNumber(takeEntryNumber());
    pass_.noteDropped(countBefore, registryEntries_.size());
}

TavDataStore::PathMatches TavDataStore::entriesMatchingRegistryPath(const QString &path) const
{
    TavRegistryEntry *const root = registryRoot();
    if (!root)
        return {};
    if (path.isEmpty() || registryPlanes_.contains(path))
        return {{root}, {}};
    const qsizetype colon = path.indexOf(u':');
    if (colon < 0) {
        qCInfo(storeLog, "Path \"%ls\" does not begin with plane?\n", qUtf16Printable(path));
        return {};
    }
    const QString plane = path.left(colon);
    QString rest = path.mid(colon + 1);
    if (rest.isEmpty())
        return {{root}, plane};
    const auto &rootChildren = root->childrenInPlane(plane);
    if (!rest.startsWith(u'/') || rootChildren.empty())
        return {};
    TavRegistryEntry *const top = rootChildren.front();
    if (rest == QLatin1String("/"))
        return {{top}, plane};
    const QString topName = top->nameAtLocationInPlane(plane);
    if (topName != QLatin1String("/"))
        rest.prepend(topName);
    const EntrySet entries = top->entriesMatchingRelativeRegistryPath(rest, plane);
    return {entries, entries.isEmpty() ? QString() : plane};
}

const EntryLocator &TavDataStore::locator() const
{
    if (!locator_)
        locator_ = std::make_unique<EntryLocator>(registryEntries_);
    return *locator_;
}

void TavDataStore::post(const QString &notification)
{
    NotificationCenter::defaultCenter().post(notification, this);
}

void TavDataStore::_fatalDxRegistryError()
{
    if (delegate_)
        delegate_->fatalDxRegistryError();
}

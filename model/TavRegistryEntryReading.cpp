// SPDX-License-Identifier: Apache-2.0
// The reading operations of TavRegistryEntry.
#include "model/DeviceModalias.h"
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"

namespace {
const QString kernelBundlePlaceholder = QStringLiteral("__kernel__");
const QString kernelBundleID = QStringLiteral("org.linux.kernel");
const QString serviceClass = QStringLiteral("DxService");

// A plane's name for the service: ASCII, in a buffer of this size with its NUL; null when it does
// not fit. Cached globally, since every entry is asked about every plane and results never change.
QByteArray planeCString(const QString &plane, qsizetype bufferSize)
{
    constexpr std::size_t maxPlanes = 32;
    static PlaneMap<QByteArray> known;
    const auto isAscii = [](QChar c) { return c.unicode() > 0 && c.unicode() < 128; };
    if (plane.size() >= bufferSize)
        return {};
    if (const QByteArray *const text = known.find(plane))
        return *text;
    if (known.size() >= maxPlanes)
        known.clear();
    const bool fits = std::all_of(plane.begin(), plane.end(), isAscii);
    return known[plane] = fits ? plane.toLatin1() : QByteArray();
}

// None unless it is UTF-8. Shares the storage of the likely text if equal.
std::optional<QString> fromServiceText(const RegistryName &text, const QString &likely)
{
    const QUtf8StringView bytes(text.data(),
                                static_cast<qsizetype>(strnlen(text.data(), text.size())));
    if (!bytes.isValidUtf8())
        return std::nullopt;
    if (!likely.isNull() && QAnyStringView(bytes) == likely)
        return likely;
    return bytes.toString();
}

// Global: the tags of all stores differ.
quint64 nextCounterTag()
{
    static quint64 next = 0;
    return next++;
}
} // namespace

bool TavRegistryEntry::initWithDxRegistryEntry(RegistryObject object, EntryStore &dataStore)
{
    RegistryService *service = dataStore.service();
    if (!service || !object)
        return false;
    handle_ = RegistryHandle::retain(*service, object);
    if (!readIdentity(*service))
        return false;
    _setDataStore(&dataStore);
    facts_.dateDiscovered = QDateTime::currentDateTimeUtc();
    if (!readInheritance(*service))
        return false;
    facts_.bundleID = service->copyBundleIdentifierForClass(facts_.inheritance.constFirst());
    if (facts_.bundleID == kernelBundlePlaceholder)
        facts_.bundleID = kernelBundleID;
    facts_.setFlag(EntryRecord::ConformsToDxService, service->conformsTo(object, serviceClass));
    if (!readAttributesAndProperties())
        return false;
    facts_.registryState = RegistryStateNew;
    return true;
}

bool TavRegistryEntry::readIdentity(RegistryService &service)
{
    if (service.hasEntryIDs())
        return service.entryID(handle_.get(), facts_.entryTag) == RegistryStatus::Success;
    facts_.entryTag = nextCounterTag();
    return true;
}

bool TavRegistryEntry::readInheritance(RegistryService &service)
{
    QString className = service.copyClassName(handle_.get());
    // Ends a chain that returns to itself.
    while (!className.isNull() && !facts_.inheritance.contains(className)) {
        facts_.inheritance.append(className);
        className =
            service.hasSuperclassLookup() ? service.copySuperclassName(className) : QString();
    }
    if (facts_.inheritance.isEmpty())
        return false;
    // Entries of one class share the list, in all stores: the cache is global.
    static QHash<QString, QStringList> known;
    QStringList &shared = known[facts_.inheritance.constFirst()];
    if (shared == facts_.inheritance)
        facts_.inheritance = shared;
    else
        shared = facts_.inheritance;
    return true;
}

bool TavRegistryEntry::readAttributesAndProperties()
{
    if (!handle_)
        return false;
    RegistryService &service = *dataStore_->service();
    if (conformsToDxService() && !readServiceState(service))
        return false;
    facts_.kernelRetainCount = service.retainCount(handle_.get());
    readKernelPath(service);
    RegistryValue table;
    const bool isRead = readDxRegistryNameAndLocationInPlane({}) &&
                        service.copyProperties(handle_.get(), table) == RegistryStatus::Success;
    makePropertiesOf(table);
    return isRead;
}

// Keeps the tree while the service returns the same values.
void TavRegistryEntry::makePropertiesOf(const RegistryValue &table)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const bool isTreeKept = !properties_ || properties_->hasClass(currentPropertyClass());
    if (!isTreeKept || !table.isSameCollectionAs(table_)) {
        if (deviceName_ && DeviceModalias::of(table) != DeviceModalias::of(table_))
            deviceName_.reset(); // another device in the same place
        return setTable(table, now);
    }
    dateRead_ = now;
    if (properties_)
        properties_->noteRead(now);
}

// Builds the text now, while the table is in the cache: a search that had to build it would wait
// for the memory of every table.
void TavRegistryEntry::setTable(const RegistryValue &table, const QDateTime &dateRead)
{
    table_ = table;
    dateRead_ = dateRead;
    properties_.reset();
    propertyText_ = table.isNone() ? PropertyText() : PropertyText(table);
}

void TavRegistryEntry::setTree(PropertyRef tree)
{
    table_ = {};
    properties_ = std::move(tree);
    propertyText_ = properties_ ? PropertyText(*properties_) : PropertyText();
}

const PropertyRef &TavRegistryEntry::propertiesRef() const
{
    if (properties_ || table_.isNone())
        return properties_;
    properties_ = treeOfTable(currentPropertyClass());
    return properties_;
}

PropertyRef TavRegistryEntry::treeOfTable(const PropertyClass &nodeClass) const
{
    PropertyRef tree = TavRegistryProperty::create(
        nodeClass, std::const_pointer_cast<TavRegistryEntry>(shared_from_this()), {}, nullptr, {},
        0, table_);
    tree->clearIsNew();
    tree->noteRead(dateRead_);
    return tree;
}

PropertyRef TavRegistryEntry::copyOfProperties(const PropertyClass &nodeClass) const
{
    if (!table_.isNone())
        return treeOfTable(nodeClass);
    if (!properties_)
        return nullptr;
    return TavRegistryProperty::restore(
        nodeClass, std::const_pointer_cast<TavRegistryEntry>(shared_from_this()),
        propertyRecords(*properties_));
}

void TavRegistryEntry::dropUnusedTree()
{
    if (!table_.isNone() && properties_.use_count() == 1)
        properties_.reset();
}

// Changes when the kernel renames the object.
void TavRegistryEntry::readKernelPath(RegistryService &service)
{
    const QString path = service.kernelPath(handle_.get());
    const QStringView known(facts_.kernelPath.data(), facts_.kernelPath.size());
    if (known != path && path.size() <= EntryRecord::maxKernelPath)
        facts_.kernelPath = CompactString(path);
}

bool TavRegistryEntry::readServiceState(RegistryService &service)
{
    quint64 state = 0;
    if (service.serviceState(handle_.get(), state) != RegistryStatus::Success)
        return false;
    facts_.setFlag(EntryRecord::Registered, state & ServiceRegistered);
    facts_.setFlag(EntryRecord::Matched, state & ServiceMatched);
    facts_.setFlag(EntryRecord::Active, !(state & ServiceInactive));
    quint32 busy = 0;
    if (service.busyState(handle_.get(), busy) != RegistryStatus::Success)
        return false;
    facts_.busyCount = busy;
    return true;
}

bool TavRegistryEntry::readDxRegistryNameAndLocationInPlane(const QString &plane)
{
    constexpr qsizetype planeBufferSize = 127;
    if (!handle_)
        return false;
    const QByteArray planeText = planeCString(plane, planeBufferSize);
    if (planeText.isNull() && !plane.isNull())
        return false;
    const char *const planeName = plane.isNull() ? nullptr : planeText.constData();
    RegistryService &service = *dataStore_->service();

    RegistryName buffer;
    if (service.nameInPlane(handle_.get(), planeName, buffer) != RegistryStatus::Success)
        return false;
    const auto name = fromServiceText(buffer, facts_.name);
    if (!name)
        return false;
    std::optional<QString> location;
    const RegistryStatus status = service.locationInPlane(handle_.get(), planeName, buffer);
    if (status == RegistryStatus::Success)
        location = fromServiceText(buffer, facts_.location);
    if (status != RegistryStatus::NotFound && !location)
        return false;

    isRenamed_ = isRenamed_ || nameInPlane(plane) != *name ||
                 locationInPlane(plane) != location.value_or(QString());
    if (plane.isNull()) {
        facts_.name = *name;
        facts_.location = location.value_or(QString());
    } else {
        facts_.namesInPlanes.set(plane, CompactString(*name));
        if (location)
            facts_.locationsInPlanes.set(plane, CompactString(*location));
    }
    return true;
}

void TavRegistryEntry::readDxRegistryNameAndLocationInPlanes(const QStringList &planes)
{
    if (!handle_)
        return;
    for (const QString &plane : planes)
        readDxRegistryNameAndLocationInPlane(plane);
}

void TavRegistryEntry::readChildrenInPlane(const QString &plane)
{
    constexpr qsizetype planeBufferSize = 511;
    const QByteArray planeText = planeCString(plane, planeBufferSize);
    if (planeText.isNull())
        return;
    EntryList *children = facts_.childrenInPlanes.find(plane);
    if (children)
        children->removeIf([](TavRegistryEntry *child) { return child->DxRegistryEntry() != 0; });
    for (TavRegistryEntry *terminated : childrenInPlane(plane))
        terminated->addParent(*this, plane);
    const EntryList newChildren = newChildrenInPlane(plane, planeText);
    for (TavRegistryEntry *child : newChildren.entries()) {
        children = children ? children : &facts_.childrenInPlanes[plane];
        children->append(child);
        child->addParent(*this, plane);
    }
    if (children && children->entries().size() > 1)
        children->setOrder(sortedArrayForPlane(children->entries(), plane));
}

// The service's children that are not in the list.
EntryList TavRegistryEntry::newChildrenInPlane(const QString &plane, const QByteArray &cPlane)
{
    const EntryList *const listed = facts_.childrenInPlanes.find(plane);
    EntryList children;
    RegistryIterator iterator = 0;
    RegistryService *const service = handle_ ? dataStore_->service() : nullptr;
    if (!service || service->childIterator(handle_.get(), cPlane.constData(), iterator) !=
                        RegistryStatus::Success)
        return children;
    while (const auto child = RegistryHandle::adopt(*service, service->iteratorNext(iterator))) {
        auto *const entry = dataStore_->registryEntryForDxRegistryEntry(child.get(), true);
        if (entry && !(listed && listed->contains(entry)))
            children.add(entry);
    }
    service->releaseIterator(iterator);
    return children;
}

void TavRegistryEntry::readChildrenInPlanes(const QStringList &planes)
{
    for (const QString &plane : planes)
        readChildrenInPlane(plane);
}

void TavRegistryEntry::noteUnchanged(const QDateTime &dateRead)
{
    setDateLastUpdated({});
    dateRead_ = dateRead;
    if (properties_)
        properties_->noteRead(dateRead_);
}

void TavRegistryEntry::updateIsSingle(bool single)
{
    if (!dataStore_ || !dataStore_->isLive())
        return;
    setDateLastUpdated(single ? QDateTime::currentDateTimeUtc() : QDateTime());
    if (!handle_ && !facts_.dateTerminated.isNull()) {
        facts_.registryState = RegistryStateTerminated;
        dataStore_->setHasPendingTerminations(true);
    } else {
        readAttributesAndProperties();
        readDxRegistryNameAndLocationInPlanes(dataStore_->registryPlanes());
        readChildrenInPlanes(dataStore_->registryPlanes());
    }
    if (single)
        dataStore_->noteObjectChanged(*this);
}

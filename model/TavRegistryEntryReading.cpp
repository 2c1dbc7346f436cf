// What TavRegistryEntry reads from the registry.
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"

namespace {
const QString kernelBundlePlaceholder = QStringLiteral("__kernel__");
const QString kernelBundleID = QStringLiteral("org.linux.kernel");
const QString serviceClass = QStringLiteral("DxService");

// A plane's name as the service takes it: ASCII in a buffer of the given size with its NUL; null
// when it cannot be one. The last ones are kept, since every entry is asked about every plane.
QByteArray planeCString(const QString &plane, qsizetype bufferSize)
{
    constexpr std::size_t mostPlanes = 32;
    static PlaneTable<QByteArray> known;
    const auto isAscii = [](QChar c) { return c.unicode() > 0 && c.unicode() < 128; };
    if (plane.size() >= bufferSize)
        return {};
    if (const QByteArray *const text = known.find(plane))
        return *text;
    if (known.size() >= mostPlanes)
        known.clear();
    const bool fits = std::all_of(plane.begin(), plane.end(), isAscii);
    return known[plane] = fits ? plane.toLatin1() : QByteArray();
}

// None for what is not UTF-8. A text equal to the likely one shares its storage.
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
    dataStore_ = &dataStore;
    dateDiscovered_ = QDateTime::currentDateTimeUtc();
    if (!readInheritance(*service))
        return false;
    bundleID_ = service->copyBundleIdentifierForClass(inheritance_.constFirst());
    if (bundleID_ == kernelBundlePlaceholder)
        bundleID_ = kernelBundleID;
    setFlag(ConformsToDxService, service->conformsTo(object, serviceClass));
    if (!readAttributesAndProperties())
        return false;
    registryState_ = RegistryStateNew;
    return true;
}

bool TavRegistryEntry::readIdentity(RegistryService &service)
{
    if (service.hasEntryIDs())
        return service.entryID(handle_.get(), entryTag_) == RegistryStatus::Success;
    entryTag_ = nextCounterTag();
    return true;
}

bool TavRegistryEntry::readInheritance(RegistryService &service)
{
    QString className = service.copyClassName(handle_.get());
    // A chain that comes back to itself ends there.
    while (!className.isNull() && !inheritance_.contains(className)) {
        inheritance_.append(className);
        className =
            service.hasSuperclassLookup() ? service.copySuperclassName(className) : QString();
    }
    if (inheritance_.isEmpty())
        return false;
    // Entries of one class share the list.
    static QHash<QString, QStringList> known;
    QStringList &shared = known[inheritance_.constFirst()];
    if (shared == inheritance_)
        inheritance_ = shared;
    else
        shared = inheritance_;
    return true;
}

bool TavRegistryEntry::readAttributesAndProperties()
{
    if (!handle_)
        return false;
    RegistryService &service = *dataStore_->service();
    if (conformsToDxService() && !readServiceState(service))
        return false;
    kernelRetainCount_ = service.retainCount(handle_.get());
    RegistryValue table;
    const bool isRead = readDxRegistryNameAndLocationInPlane({}) &&
                        service.copyProperties(handle_.get(), table) == RegistryStatus::Success;
    makePropertiesOf(table);
    return isRead;
}

// The tree stays as it is while the service has the very same values.
void TavRegistryEntry::makePropertiesOf(const RegistryValue &table)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const bool isTreeKept = !properties_ || properties_->hasClass(currentPropertyClass());
    if (!isTreeKept || !table.isSameCollectionAs(table_))
        return setTable(table, now);
    dateRead_ = now;
    if (properties_)
        properties_->noteRead(now);
}

// The text is made while the table has just been and is at hand: a search that had to make it would
// wait for the memory of every table.
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
    properties_ = TavRegistryProperty::create(
        currentPropertyClass(), std::const_pointer_cast<TavRegistryEntry>(shared_from_this()), {},
        nullptr, {}, 0, table_);
    properties_->clearIsNew();
    properties_->noteRead(dateRead_);
    return properties_;
}

void TavRegistryEntry::dropUnusedTree()
{
    if (!table_.isNone() && properties_.use_count() == 1)
        properties_.reset();
}

bool TavRegistryEntry::readServiceState(RegistryService &service)
{
    quint64 state = 0;
    if (service.serviceState(handle_.get(), state) != RegistryStatus::Success)
        return false;
    setFlag(Registered, state & ServiceRegistered);
    setFlag(Matched, state & ServiceMatched);
    setFlag(Active, !(state & ServiceInactive));
    quint32 busy = 0;
    if (service.busyState(handle_.get(), busy) != RegistryStatus::Success)
        return false;
    busyCount_ = busy;
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
    const auto name = fromServiceText(buffer, name_);
    if (!name)
        return false;
    std::optional<QString> location;
    const RegistryStatus status = service.locationInPlane(handle_.get(), planeName, buffer);
    if (status == RegistryStatus::Success)
        location = fromServiceText(buffer, location_);
    if (status != RegistryStatus::NotFound && !location)
        return false;

    isRenamed_ = isRenamed_ || nameInPlane(plane) != *name ||
                 locationInPlane(plane) != location.value_or(QString());
    if (plane.isNull()) {
        name_ = *name;
        location_ = location.value_or(QString());
    } else {
        namesInPlanes_.set(plane, CompactString(*name));
        if (location)
            locationsInPlanes_.set(plane, CompactString(*location));
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
    EntryList *children = childrenInPlanes_.find(plane);
    if (children)
        children->removeIf([](TavRegistryEntry *child) { return child->DxRegistryEntry() != 0; });
    for (TavRegistryEntry *terminated : childrenInPlane(plane))
        terminated->addParent(*this, plane);
    for (TavRegistryEntry *child : newChildrenInPlane(plane, planeText)) {
        children = children ? children : &childrenInPlanes_[plane];
        children->append(child);
        child->addParent(*this, plane);
    }
    if (children && children->entries().size() > 1)
        children->setOrder(sortedArrayForPlane(children->entries(), plane));
}

// Those of the service that are not in the list, none twice.
EntryList::Entries TavRegistryEntry::newChildrenInPlane(const QString &plane,
                                                        const QByteArray &cPlane)
{
    static quint64 reading = 0;
    ++reading;
    for (TavRegistryEntry *listed : childrenInPlane(plane))
        listed->listedByReading_ = reading;
    EntryList::Entries children;
    RegistryIterator iterator = 0;
    RegistryService *const service = handle_ ? dataStore_->service() : nullptr;
    if (!service || service->childIterator(handle_.get(), cPlane.constData(), iterator) !=
                        RegistryStatus::Success)
        return children;
    while (const auto child = RegistryHandle::adopt(*service, service->iteratorNext(iterator))) {
        auto *const entry = dataStore_->registryEntryForDxRegistryEntry(child.get(), true);
        if (entry && std::exchange(entry->listedByReading_, reading) != reading)
            children.push_back(entry);
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
    if (!handle_ && !dateTerminated_.isNull()) {
        registryState_ = RegistryStateTerminated;
        dataStore_->setHasPendingTerminations(true);
    } else {
        readAttributesAndProperties();
        readDxRegistryNameAndLocationInPlanes(dataStore_->registryPlanes());
        readChildrenInPlanes(dataStore_->registryPlanes());
    }
    if (single)
        dataStore_->noteObjectChanged(*this);
}

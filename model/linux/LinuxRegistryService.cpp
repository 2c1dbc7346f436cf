#include "model/linux/LinuxRegistryService.h"

#include "model/linux/HostFacts.h"

#include <QFile>
#include <cstring>

namespace {
using Kind = SweepObject::Kind;
using Folder = AttributePolicy::Folder;

Folder folderOf(Kind kind)
{
    switch (kind) {
    case Kind::Bus:
        return Folder::Bus;
    case Kind::Class:
        return Folder::Class;
    case Kind::Driver:
        return Folder::Driver;
    case Kind::Module:
        return Folder::Module;
    case Kind::FirmwareNode:
        return Folder::Firmware;
    default:
        return Folder::Device;
    }
}

bool hasDirectory(const HostObject &object)
{
    return object.kind != Kind::Root && object.kind != Kind::Host && object.kind != Kind::Binding;
}

// Adds members to those that are there; dictionaries of the same key become one.
RegistryValue::Members merged(RegistryValue::Members base, const RegistryValue::Members &added)
{
    for (const RegistryValue::Member &member : added) {
        const auto place =
            std::lower_bound(base.begin(), base.end(), member, [](const auto &a, const auto &b) {
                return a.key.toOwner().toUtf8() < b.key.toOwner().toUtf8();
            });
        const bool isThere = place != base.end() && place->key == member.key;
        if (!isThere)
            base.insert(place, member);
        else if (member.value.type() == RegistryValue::Type::Dictionary)
            place->value =
                RegistryValue::dictionary(merged(place->value.members(), member.value.members()));
        else
            place->value = member.value;
    }
    return base;
}
} // namespace

std::unique_ptr<LinuxRegistryService> LinuxRegistryService::create(const QString &sysfsRoot,
                                                                   QString *error)
{
    return create(sysfsRoot, {}, error);
}

std::unique_ptr<LinuxRegistryService>
LinuxRegistryService::create(const QString &sysfsRoot, Sweeper::Options options, QString *error)
{
    auto root = SysfsRoot::open(QFile::encodeName(sysfsRoot), error);
    if (!root)
        return nullptr;
    return std::unique_ptr<LinuxRegistryService>(
        new LinuxRegistryService(std::make_shared<const SysfsRoot>(std::move(*root)), options));
}

LinuxRegistryService::LinuxRegistryService(std::shared_ptr<const SysfsRoot> root,
                                           Sweeper::Options options)
    : root_(std::move(root))
    , sweeper_(root_, options)
    , udev_(root_->folder())
{}

LinuxRegistryService::~LinuxRegistryService() = default;

void LinuxRegistryService::prepare()
{
    const bool isLive = root_->isKernels();
    Sweep sweep = sweeper_.run();
    filesRead_ = std::move(sweep.filesRead);
    for (SweepObject &object : sweep.objects)
        addRequested(object);
    RegistryValue::Members rootFacts =
        isLive ? HostFacts::ofRunningKernel() : RegistryValue::Members();
    RegistryValue::Members hostFacts = HostFacts::ofDeviceTree(*root_);
    if (isLive)
        hostFacts = merged(std::move(hostFacts), HostFacts::ofRunningSystem());
    HostObjects objects(std::move(sweep), std::move(rootFacts), std::move(hostFacts), classNames_);
    install(std::make_unique<RegistryGraph>(std::move(objects), udev_));
}

void LinuxRegistryService::install(std::unique_ptr<RegistryGraph> graph)
{
    const std::unique_ptr<RegistryGraph> previous = std::exchange(graph_, std::move(graph));
    ++sweepCount_;
    std::erase_if(onRequest_, [this](const auto &its) {
        return graph_->withID(its.first) == HostObject::none;
    });
    handles_.assign(static_cast<std::size_t>(graph_->count()), 0);
    for (std::size_t i = 0; i < held_.size(); ++i) {
        Held &its = held_[i];
        if (its.references == 0 || its.gone)
            continue;
        const int before = std::exchange(its.index, graph_->withID(its.id));
        if (its.index == HostObject::none)
            its.gone = std::make_unique<HostObject>(previous->at(before));
        else
            handles_[static_cast<std::size_t>(its.index)] = static_cast<RegistryObject>(i + 1);
    }
}

void LinuxRegistryService::prepareObject(RegistryObject object)
{
    Held *const its = held(object);
    if (!its || its->gone || !hasDirectory(graph_->at(its->index)))
        return;
    const HostObject &known = graph_->at(its->index);
    const ObjectReader::Request request{folderOf(known.kind), known.kind, known.path, known.id};
    Sweeper::ObjectReading reading = sweeper_.readObject(request);
    if (reading.always.members.empty())
        return; // it has gone meanwhile; the next sweep will tell
    if (!reading.onRequest.members.empty())
        onRequest_[known.id] = {std::move(reading.onRequest.members),
                                QDateTime::currentDateTimeUtc()};
    SweepObject &fresh = reading.always;
    std::move(reading.onRequest.unread.begin(), reading.onRequest.unread.end(),
              std::back_inserter(fresh.unread));
    fresh.inode = known.id;
    addRequested(fresh);
    graph_->replaceMembers(its->index, std::move(fresh.members), std::move(fresh.unread), udev_);
}

// What was read of one object alone keeps its last value, marked by its date.
void LinuxRegistryService::addRequested(SweepObject &object) const
{
    const auto requested = onRequest_.find(object.inode);
    if (requested == onRequest_.end())
        return;
    const auto &[members, date] = requested->second;
    object.members = merged(std::move(object.members), members);
    object.members =
        merged(std::move(object.members),
               {{CompactString(QStringLiteral("DxReadOnRequest")), RegistryValue::date(date)}});
}

const HostObject *LinuxRegistryService::find(RegistryObject object) const
{
    if (object == 0 || object > held_.size() || held_[object - 1].references == 0)
        return nullptr;
    const Held &its = held_[object - 1];
    return its.gone ? its.gone.get() : &graph_->at(its.index);
}

LinuxRegistryService::Held *LinuxRegistryService::held(RegistryObject object)
{
    return find(object) ? &held_[object - 1] : nullptr;
}

RegistryObject LinuxRegistryService::hold(int index)
{
    RegistryObject &handle = handles_[static_cast<std::size_t>(index)];
    if (handle == 0) {
        if (freeHandles_.empty()) {
            held_.emplace_back();
            handle = static_cast<RegistryObject>(held_.size());
        } else {
            handle = freeHandles_.back();
            freeHandles_.pop_back();
        }
        Held &its = held_[handle - 1];
        its.id = graph_->at(index).id;
        its.index = index;
    }
    ++held_[handle - 1].references;
    return handle;
}

void LinuxRegistryService::retain(RegistryObject object)
{
    if (Held *const its = held(object))
        ++its->references;
}

void LinuxRegistryService::release(RegistryObject object)
{
    Held *const its = held(object);
    if (!its || --its->references > 0)
        return;
    if (!its->gone)
        handles_[static_cast<std::size_t>(its->index)] = 0;
    *its = Held();
    freeHandles_.push_back(object);
}

RegistryObject LinuxRegistryService::rootEntry()
{
    if (!graph_)
        prepare();
    return hold(HostObjects::root);
}

RegistryObject LinuxRegistryService::entryFromPath(const QString &path)
{
    if (!graph_)
        prepare();
    const qsizetype colon = path.indexOf(u':');
    const auto plane = planeWithName(path.left(colon).toStdString());
    if (colon < 0 || !plane || !path.mid(colon + 1).startsWith(u'/'))
        return 0;
    int index = HostObjects::host;
    const QByteArrayList names = path.mid(colon + 2).toUtf8().split('/');
    for (const QByteArray &name : names) {
        if (name.isEmpty() && names.size() == 1)
            break; // "Plane:/" is the host itself
        const auto children = graph_->childrenInPlane(index, *plane);
        const auto child = std::find_if(children.begin(), children.end(), [&](int candidate) {
            const NameAndLocation &its = graph_->at(candidate).nameInPlane(*plane);
            return name == (its.location.isNull() ? its.name : its.name + '@' + its.location);
        });
        if (child == children.end())
            return 0;
        index = *child;
    }
    return hold(index);
}

RegistryStatus LinuxRegistryService::childIterator(RegistryObject object, const char *plane,
                                                   RegistryIterator &iterator)
{
    const Held *const its = held(object);
    const auto known = planeWithName(plane);
    if (!its || !known || !graph_->hasPlane(*known))
        return RegistryStatus::Failed;
    if (freeIterators_.empty()) {
        iterators_.emplace_back();
        iterator = static_cast<RegistryIterator>(iterators_.size());
    } else {
        iterator = freeIterators_.back();
        freeIterators_.pop_back();
    }
    Iterator &fresh = iterators_[iterator - 1];
    fresh.rest = its->gone ? std::span<const int>() : graph_->childrenInPlane(its->index, *known);
    fresh.sweep = sweepCount_;
    return RegistryStatus::Success;
}

RegistryObject LinuxRegistryService::iteratorNext(RegistryIterator iterator)
{
    if (iterator == 0 || iterator > iterators_.size())
        return 0;
    Iterator &its = iterators_[iterator - 1];
    if (its.sweep != sweepCount_ || its.rest.empty())
        return 0;
    const int index = its.rest.front();
    its.rest = its.rest.subspan(1);
    return hold(index);
}

void LinuxRegistryService::releaseIterator(RegistryIterator iterator)
{
    if (iterator == 0 || iterator > iterators_.size())
        return;
    iterators_[iterator - 1] = {};
    freeIterators_.push_back(iterator);
}

RegistryStatus LinuxRegistryService::copyText(const QByteArray &text, RegistryName &buffer)
{
    const auto size = static_cast<std::size_t>(text.size());
    if (size >= buffer.size())
        return RegistryStatus::Failed;
    std::memcpy(buffer.data(), text.constData(), size + 1);
    return RegistryStatus::Success;
}

RegistryStatus LinuxRegistryService::nameInPlane(RegistryObject object, const char *plane,
                                                 RegistryName &name)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    const auto known = plane ? planeWithName(plane) : std::nullopt;
    return copyText(known ? its->nameInPlane(*known).name : its->name.name, name);
}

RegistryStatus LinuxRegistryService::locationInPlane(RegistryObject object, const char *plane,
                                                     RegistryName &location)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    const auto known = plane ? planeWithName(plane) : std::nullopt;
    const QByteArray &text = known ? its->nameInPlane(*known).location : its->name.location;
    return text.isNull() ? RegistryStatus::NotFound : copyText(text, location);
}

QString LinuxRegistryService::copyClassName(RegistryObject object)
{
    const HostObject *const its = find(object);
    return its ? its->className : QString();
}

QString LinuxRegistryService::copySuperclassName(const QString &className)
{
    return classNames_.superclass(className);
}

QString LinuxRegistryService::copyBundleIdentifierForClass(const QString &className)
{
    return classNames_.bundle(className);
}

bool LinuxRegistryService::conformsTo(RegistryObject object, const QString &className)
{
    const HostObject *const its = find(object);
    return its && classNames_.isKindOf(its->className, className);
}

RegistryStatus LinuxRegistryService::entryID(RegistryObject object, quint64 &id)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    id = its->id;
    return RegistryStatus::Success;
}

bool LinuxRegistryService::objectsEqual(RegistryObject a, RegistryObject b)
{
    const HostObject *const first = find(a);
    const HostObject *const second = find(b);
    return first && second && first->id == second->id;
}

RegistryStatus LinuxRegistryService::copyProperties(RegistryObject object,
                                                    RegistryValue &properties)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    properties = its->properties;
    return RegistryStatus::Success;
}

RegistryValue LinuxRegistryService::copyProperty(RegistryObject object, const QString &key)
{
    const HostObject *const its = find(object);
    return its ? its->properties.member(key) : RegistryValue();
}

RegistryStatus LinuxRegistryService::serviceState(RegistryObject object, quint64 &state)
{
    const Held *const its = held(object);
    if (!its)
        return RegistryStatus::Failed;
    if (its->gone) {
        state = ServiceInactive;
        return RegistryStatus::Success;
    }
    const HostObject &known = graph_->at(its->index);
    const bool isMatched = known.kind != Kind::Device || known.binding != HostObject::none ||
                           (!known.subsystem.isEmpty() && !known.isOnBus);
    state = (known.isAnnounced ? quint64(ServiceRegistered) : 0) |
            (isMatched ? quint64(ServiceMatched) : 0);
    return RegistryStatus::Success;
}

RegistryStatus LinuxRegistryService::busyState(RegistryObject object, quint32 &busyCount)
{
    const Held *const its = held(object);
    if (!its)
        return RegistryStatus::Failed;
    busyCount = its->gone ? 0 : graph_->at(its->index).busyCount();
    return RegistryStatus::Success;
}

quint32 LinuxRegistryService::retainCount(RegistryObject object)
{
    const HostObject *const its = find(object);
    return its ? its->retainCount : 0;
}

QString LinuxRegistryService::bundleURLForIdentifier(const QString &bundleID)
{
    return bundles_.fileOf(bundleID);
}

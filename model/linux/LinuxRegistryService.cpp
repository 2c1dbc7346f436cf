// SPDX-License-Identifier: Apache-2.0
#include "model/linux/LinuxRegistryService.h"

#include "model/linux/HardwareDatabase.h"
#include "model/linux/HostEvents.h"

#include <QFile>

namespace {
using Kind = RawObject::Kind;
} // namespace

LinuxRegistryService::Created LinuxRegistryService::create(const QString &sysfsRoot,
                                                           TreeReader::Options options)
{
    auto root = SysfsRoot::open(QFile::encodeName(sysfsRoot));
    if (!root)
        return root.error();
    return std::unique_ptr<LinuxRegistryService>(
        new LinuxRegistryService(std::make_shared<const SysfsRoot>(std::move(*root)), options));
}

LinuxRegistryService::LinuxRegistryService(std::shared_ptr<const SysfsRoot> root,
                                           TreeReader::Options options)
    : root_(std::move(root))
    , treeReader_(root_, options)
    , udev_(root_->folder())
    , deviceNames_(std::make_shared<DeviceNames>(std::make_unique<HardwareDatabase>()))
    , notifier_(*root_, objects_, ports())
    , alive_(std::make_shared<int>())
{
    if (root_->isKernels())
        openEvents_ = [this] { return HostEvents::open(udev_.isDaemonRunning()); };
}

LinuxRegistryService::~LinuxRegistryService() = default;

void LinuxRegistryService::retain(RegistryObject object)
{
    objects_.retain(object);
}

void LinuxRegistryService::release(RegistryObject object)
{
    objects_.release(object);
}

RegistryObject LinuxRegistryService::rootEntry()
{
    if (!graph() && !prepare())
        return 0;
    return objects_.hold(ObjectTable::root);
}

RegistryObject LinuxRegistryService::entryFromPath(const QString &path)
{
    const qsizetype colon = path.indexOf(u':');
    const auto plane = planeWithName(path.left(colon).toStdString());
    if (colon < 0 || !plane || !path.mid(colon + 1).startsWith(u'/'))
        return 0;
    if (path.size() == colon + 2)
        return holdHost(); // "Plane:/"
    if (!graph() && !prepare())
        return 0;
    int index = ObjectTable::host;
    const QByteArrayList names = path.mid(colon + 2).toUtf8().split('/');
    for (const QByteArray &name : names) {
        const auto children = graph()->childrenInPlane(index, *plane);
        const auto child = std::find_if(children.begin(), children.end(), [&](int candidate) {
            const NameAndLocation &its = graph()->at(candidate).nameInPlane(*plane);
            return name == (its.location.isNull() ? its.name : its.name + '@' + its.location);
        });
        if (child == children.end())
            return 0;
        index = *child;
    }
    return objects_.hold(index);
}

// Works before the first reading, so that notifications can be registered.
RegistryObject LinuxRegistryService::holdHost()
{
    HostObject host;
    host.kind = Kind::Host;
    host.id = host.nodeID = ObjectTable::hostID;
    host.name.name = "Host";
    return objects_.hold(std::move(host));
}

RegistryStatus LinuxRegistryService::childIterator(RegistryObject object, const char *plane,
                                                   RegistryIterator &iterator)
{
    const auto known = planeWithName(plane);
    if (!find(object) || !known || !graph() || !graph()->hasPlane(*known))
        return RegistryStatus::Failed;
    if (freeIterators_.empty()) {
        iterators_.emplace_back();
        iterator = static_cast<RegistryIterator>(iterators_.size());
    } else {
        iterator = freeIterators_.back();
        freeIterators_.pop_back();
    }
    Iterator &fresh = iterators_[iterator - 1];
    const int index = objects_.indexOf(object);
    fresh.rest = index == HostObject::none ? std::span<const int>()
                                           : graph()->childrenInPlane(index, *known);
    fresh.reading = treeReadings_;
    return RegistryStatus::Success;
}

RegistryObject LinuxRegistryService::iteratorNext(RegistryIterator iterator)
{
    if (NotificationPorts::isIterator(iterator))
        return ports().next(iterator);
    if (iterator == 0 || iterator > iterators_.size())
        return 0;
    Iterator &its = iterators_[iterator - 1];
    if (its.reading != treeReadings_)
        return 0;
    while (!its.rest.empty()) {
        const int index = its.rest.front();
        its.rest = its.rest.subspan(1);
        if (!notifier_.isGone(index))
            return objects_.hold(index);
    }
    return 0;
}

void LinuxRegistryService::releaseIterator(RegistryIterator iterator)
{
    if (NotificationPorts::isIterator(iterator))
        return ports().releaseIterator(iterator);
    if (iterator == 0 || iterator > iterators_.size())
        return;
    iterators_[iterator - 1] = {};
    freeIterators_.push_back(iterator);
}

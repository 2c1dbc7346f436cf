// SPDX-License-Identifier: Apache-2.0
#include "model/linux/EventNotifier.h"

#include "model/linux/ObjectNames.h"
#include "model/linux/SysfsRoot.h"

namespace {
using Matching = NotificationPorts::Matching;
using Interest = NotificationPorts::Interest;

constexpr int maxChecks = 3;

// A device known only from its event.
HostObject announcedDevice(const SysfsPath &path, quint64 inode, quint64 id)
{
    HostObject device;
    device.path = path;
    device.id = id;
    device.nodeID = device.inode = inode;
    device.kernelName = path.name();
    device.name = ObjectNames::ofKernelName(device.kernelName);
    device.className = QStringLiteral("DxDevice");
    device.properties = RegistryValue::dictionary({});
    return device;
}
} // namespace

EventNotifier::EventNotifier(const SysfsRoot &root, ObjectHandles &objects,
                             NotificationPorts &ports)
    : root_(root)
    , objects_(objects)
    , ports_(ports)
{}

void EventNotifier::handle(const DeviceEvent &event)
{
    if (!objects_.graph())
        return; // the first reading will see it
    const SysfsPath binding = event.path.child("driver");
    switch (event.action) {
    case DeviceEvent::Action::Add:
        appeared(Matching::Publish, event.path);
        break;
    case DeviceEvent::Action::Bind:
        appeared(Matching::Matched, event.path);
        appeared(Matching::Publish, binding);
        break;
    case DeviceEvent::Action::Remove:
        noteRemoval(binding);
        noteRemoval(event.path);
        break;
    case DeviceEvent::Action::Unbind:
        noteRemoval(binding);
        reportChange();
        break;
    case DeviceEvent::Action::Move:
    case DeviceEvent::Action::Change:
        reportChange();
        break;
    }
}

void EventNotifier::appeared(Matching kind, const SysfsPath &path)
{
    const quint64 inode = root_.inodeOf(path);
    if (inode == 0)
        return; // gone again, or moved, which has its own event
    if (!path.isBelow("devices")) {
        reportChange(); // not a service: there are no subscribers for it
        return;
    }
    returned_.notePresent(inode);
    const RegistryObject device =
        objects_.hold(announcedDevice(path, inode, returned_.idOf(inode)));
    ports_.announce(kind, device);
    objects_.release(device);
}

void EventNotifier::noteRemoval(const SysfsPath &path)
{
    if (isReading_)
        removalsInReading_.push_back(path);
    check({path, maxChecks});
}

void EventNotifier::check(const Removal &removal)
{
    const int index = objects_.graph()->withPath(removal.path);
    if (index == HostObject::none || isGone(index))
        return; // unknown, or already announced
    const HostObject &object = objects_.graph()->at(index);
    if (root_.inodeOf(object.path) != object.inode) {
        const RegistryObject handle = objects_.hold(index);
        returned_.noteGone(object);
        announceGone(handle);
        objects_.release(handle);
    } else if (removal.checksLeft > 0) {
        // The event is for a former object at this path, or arrives before the object is removed.
        doubtful_.push_back({removal.path, removal.checksLeft - 1});
        constexpr double soon = 0.1;
        if (!nextCheck_)
            nextCheck_ = OneShotTimer::schedule(soon, [this](const auto &) { checkAgain(); });
    }
}

void EventNotifier::checkAgain()
{
    nextCheck_.reset();
    const std::vector<Removal> doubtful = std::exchange(doubtful_, {});
    for (const Removal &removal : doubtful)
        check(removal);
    ports_.deliver();
}

// To subscribers of any class: nothing else reports the end of an object that is not a service.
void EventNotifier::announceGone(RegistryObject object)
{
    ports_.announce(Matching::Terminate, object, true);
}

void EventNotifier::readingBegins()
{
    isReading_ = true;
    removalsInReading_.clear();
}

void EventNotifier::graphChanged(const std::vector<RegistryObject> &vanished,
                                 quint32 busyCountBefore)
{
    isReading_ = false;
    for (const RegistryObject object : vanished) {
        const HostObject &last = *objects_.find(object);
        if (returned_.isGone(last))
            continue;
        returned_.noteGone(last);
        announceGone(object);
    }
    for (const SysfsPath &path : std::exchange(removalsInReading_, {}))
        check({path, maxChecks});
    busyCountChanged(busyCountBefore);
}

void EventNotifier::busyCountChanged(quint32 before)
{
    const RegistryObject host = objects_.hold(ObjectTable::host);
    const quint32 busyCount = objects_.graph()->at(ObjectTable::host).busyCount();
    if ((busyCount > 0) != (before > 0))
        ports_.report(Interest::Busy, host, busyCount);
    objects_.release(host);
}

void EventNotifier::reportChange()
{
    const RegistryObject host = objects_.hold(ObjectTable::host);
    ports_.report(Interest::General, host);
    objects_.release(host);
}

#include "model/linux/EventNotifier.h"

#include "model/linux/ObjectNames.h"
#include "model/linux/SysfsRoot.h"

namespace {
using Matching = NotificationPorts::Matching;
using Interest = NotificationPorts::Interest;

constexpr int mostChecks = 3;

// What is known of a device before a reading has seen it.
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
        tellOfChange();
        break;
    case DeviceEvent::Action::Change:
        tellOfChange();
        break;
    }
}

void EventNotifier::appeared(Matching kind, const SysfsPath &path)
{
    const quint64 inode = root_.inodeOf(path);
    if (inode == 0)
        return; // it has gone again, or moved, which is an event of its own
    if (!path.isBelow("devices")) {
        tellOfChange(); // no service, which nobody can ask to be told of
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
    check({path, mostChecks});
}

void EventNotifier::check(const Removal &removal)
{
    const int index = objects_.graph()->withPath(removal.path);
    if (index == HostObject::none || isGone(index))
        return; // nobody knows it, or all do
    const HostObject &object = objects_.graph()->at(index);
    if (root_.inodeOf(object.path) != object.inode) {
        const RegistryObject handle = objects_.hold(index);
        returned_.noteGone(object);
        announceGone(handle);
        objects_.release(handle);
    } else if (removal.checksLeft > 0) {
        // The event is of a former object at this path, or is told just before the object goes.
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

// Whatever class is asked for: of what is no service nobody else would tell that it is gone.
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
        check({path, mostChecks});
    busyCountChanged(busyCountBefore);
}

void EventNotifier::busyCountChanged(quint32 before)
{
    const RegistryObject host = objects_.hold(ObjectTable::host);
    const quint32 busyCount = objects_.graph()->at(ObjectTable::host).busyCount();
    if ((busyCount > 0) != (before > 0))
        ports_.tell(Interest::Busy, host, busyCount);
    objects_.release(host);
}

void EventNotifier::tellOfChange()
{
    const RegistryObject host = objects_.hold(ObjectTable::host);
    ports_.tell(Interest::General, host);
    objects_.release(host);
}

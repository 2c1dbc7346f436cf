// SPDX-License-Identifier: Apache-2.0
#include "model/linux/DeviceEvent.h"

#include <libudev.h>
#include <limits.h>

namespace {
DeviceEvent::Action actionNamed(QByteArrayView name)
{
    using Action = DeviceEvent::Action;
    constexpr std::pair<const char *, Action> named[] = {
        {"add", Action::Add},       {"remove", Action::Remove}, {"bind", Action::Bind},
        {"unbind", Action::Unbind}, {"move", Action::Move},
    };
    for (const auto &[its, action] : named) {
        if (name == QByteArrayView(its))
            return action;
    }
    return Action::Change;
}

// Whether it consists of names with single slashes before them.
bool isPlainPath(QByteArrayView path)
{
    if (!path.startsWith('/') || path.size() >= PATH_MAX || path.contains('\0'))
        return false;
    qsizetype start = 1;
    while (start <= path.size()) {
        qsizetype end = path.indexOf('/', start);
        if (end < 0)
            end = path.size();
        const QByteArrayView name = path.sliced(start, end - start);
        if (name.isEmpty() || name.size() > NAME_MAX || name == "." || name == "..")
            return false;
        start = end + 1;
    }
    return true;
}
} // namespace

std::optional<DeviceEvent> DeviceEvent::parse(QByteArrayView action, QByteArrayView devicePath)
{
    if (action.isEmpty() || !isPlainPath(devicePath))
        return std::nullopt;
    return DeviceEvent{.action = actionNamed(action),
                       .path = SysfsPath(devicePath.sliced(1).toByteArray())};
}

std::optional<DeviceEvent> DeviceEvent::fromDevice(udev_device *device)
{
    const char *const action = udev_device_get_action(device);
    const char *const path = udev_device_get_devpath(device);
    auto event = parse(QByteArrayView(action), QByteArrayView(path));
    if (!event)
        return event;
    event->subsystem = udev_device_get_subsystem(device);
    event->sequence = udev_device_get_seqnum(device);
    event->driver = udev_device_get_property_value(device, "DRIVER");
    const QByteArrayView oldPath(udev_device_get_property_value(device, "DEVPATH_OLD"));
    if (event->action == Action::Move && isPlainPath(oldPath))
        event->oldPath = SysfsPath(oldPath.sliced(1).toByteArray());
    return event;
}

RegistryEvent::Kind DeviceEvent::kind() const
{
    using Kind = RegistryEvent::Kind;
    switch (action) {
    case Action::Add:
        return Kind::Appeared;
    case Action::Remove:
        return Kind::Gone;
    case Action::Bind:
        return Kind::Bound;
    case Action::Unbind:
        return Kind::Unbound;
    case Action::Move:
        return oldPath.parent() == path.parent() ? Kind::Renamed : Kind::Moved;
    case Action::Change:
        break;
    }
    return Kind::Changed;
}

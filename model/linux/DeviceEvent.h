#pragma once

#include "model/linux/SysfsPath.h"

#include <optional>

struct udev_device;

// What the host tells of one of its objects.
struct DeviceEvent
{
    enum class Action : quint8 { Add, Remove, Bind, Unbind, Change }; // Change: any other

    Action action = Action::Change;
    SysfsPath path;

    // None for what names no object of a sysfs tree. The device path begins with a slash.
    static std::optional<DeviceEvent> parse(QByteArrayView action, QByteArrayView devicePath);
    static std::optional<DeviceEvent> fromDevice(udev_device *device);
};

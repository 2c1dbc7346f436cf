// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryEvent.h"
#include "model/linux/SysfsPath.h"

#include <optional>

struct udev_device;

// An event of an object of the host.
struct DeviceEvent
{
    enum class Action : quint8 { Add, Remove, Bind, Unbind, Move, Change }; // Change: any other

    Action action = Action::Change;
    SysfsPath path = {};
    QByteArray subsystem = {}; // null: unknown
    SysfsPath oldPath = {};    // of a move
    QByteArray driver = {};
    quint64 sequence = 0; // the kernel's number; 0: none
    std::vector<RegistryEvent::Change> changes = {};

    // None unless it names an object of a sysfs tree. The device path begins with a slash.
    static std::optional<DeviceEvent> parse(QByteArrayView action, QByteArrayView devicePath);
    static std::optional<DeviceEvent> fromDevice(udev_device *device);
    RegistryEvent::Kind kind() const;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/SysfsPath.h"

// What a sysfs directory is, judged by its path.
namespace SysfsPlaces {
// A folder of a subsystem's system devices, such as "devices/system/cpu".
bool isSystemFolder(const SysfsPath &path);
// Named like a system device, such as "devices/system/cpu/cpu0": before 3.3, kernels gave them
// neither a uevent nor a link to their subsystem.
bool isSystemDevice(const SysfsPath &path);
QByteArray subsystemOfSystemDevice(const SysfsPath &path); // "cpu"
bool isDriver(const SysfsPath &path);                      // "bus/pci/drivers/nvme"
bool isSubsystem(const SysfsPath &path); // "bus/pci", "class/net"; "block" of older kernels
} // namespace SysfsPlaces

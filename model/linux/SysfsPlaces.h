#pragma once

#include <QByteArray>

// What a directory of sysfs is by its place. Paths are relative to the tree's root.
namespace SysfsPlaces {
QByteArray baseName(const QByteArray &path);
QByteArray folderOf(const QByteArray &path); // empty for one at the top
// A folder of a subsystem's system devices, such as "devices/system/cpu".
bool isSystemFolder(QByteArrayView path);
// Named as the kernel names system devices, such as "devices/system/cpu/cpu0": kernels before 3.3
// gave them neither a uevent nor a link to their subsystem.
bool isSystemDevice(QByteArrayView path);
QByteArray subsystemOfSystemDevice(const QByteArray &path); // "cpu"
bool isDriver(QByteArrayView path);                         // "bus/pci/drivers/nvme"
bool isSubsystem(QByteArrayView path); // "bus/pci", "class/net"; "block" of older kernels
} // namespace SysfsPlaces

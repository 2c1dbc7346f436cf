// SPDX-License-Identifier: Apache-2.0
#include "model/linux/SysfsPlaces.h"

#include "model/linux/AttributeText.h"

#include <algorithm>

namespace {
constexpr QByteArrayView systemFolders = "devices/system";

// A word and a number. Groups of attributes, such as "cpuidle", have no number.
bool isNumbered(QByteArrayView name)
{
    const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
    return !name.isEmpty() && isLower(name.front()) && AttributeText::isDigit(name.back()) &&
           std::all_of(name.begin(), name.end(),
                       [&](char c) { return isLower(c) || AttributeText::isDigit(c) || c == '_'; });
}

bool isDirectlyBelow(QByteArrayView folder, const SysfsPath &path)
{
    return path.isBelow(folder) && path.toByteArray().indexOf('/', folder.size() + 1) < 0;
}
} // namespace

bool SysfsPlaces::isSystemFolder(const SysfsPath &path)
{
    return isDirectlyBelow(systemFolders, path) || path == "devices/system/edac/mc";
}

bool SysfsPlaces::isSystemDevice(const SysfsPath &path)
{
    // Cheap check first: called for every directory.
    return path.isBelow(systemFolders) && isSystemFolder(path.parent()) && isNumbered(path.name());
}

QByteArray SysfsPlaces::subsystemOfSystemDevice(const SysfsPath &path)
{
    return path.toByteArray().mid(systemFolders.size() + 1).split('/').constFirst();
}

bool SysfsPlaces::isDriver(const SysfsPath &path)
{
    if (!path.isBelow("bus"))
        return false;
    const SysfsPath drivers = path.parent();
    return drivers.name() == "drivers" && isDirectlyBelow("bus", drivers.parent());
}

bool SysfsPlaces::isSubsystem(const SysfsPath &path)
{
    return isDirectlyBelow("bus", path) || isDirectlyBelow("class", path) || path == "block";
}

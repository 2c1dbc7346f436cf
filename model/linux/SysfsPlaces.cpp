#include "model/linux/SysfsPlaces.h"

#include "model/linux/AttributeText.h"

#include <algorithm>

namespace {
constexpr QByteArrayView systemFolders = "devices/system/";

// A word and a number. The names of groups of attributes, such as "cpuidle", have none.
bool isNumbered(QByteArrayView name)
{
    const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
    return !name.isEmpty() && isLower(name.front()) && AttributeText::isDigit(name.back()) &&
           std::all_of(name.begin(), name.end(),
                       [&](char c) { return isLower(c) || AttributeText::isDigit(c) || c == '_'; });
}
// The folder ends with a slash.
bool isStraightBelow(QByteArrayView folder, QByteArrayView path)
{
    return path.startsWith(folder) && path.size() > folder.size() &&
           path.indexOf('/', folder.size()) < 0;
}
} // namespace

QByteArray SysfsPlaces::baseName(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray SysfsPlaces::folderOf(const QByteArray &path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf('/'), 0));
}

bool SysfsPlaces::isSystemFolder(QByteArrayView path)
{
    return isStraightBelow(systemFolders, path) || path == "devices/system/edac/mc";
}

bool SysfsPlaces::isSystemDevice(QByteArrayView path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash > 0 && isSystemFolder(path.first(slash)) && isNumbered(path.sliced(slash + 1));
}

QByteArray SysfsPlaces::subsystemOfSystemDevice(const QByteArray &path)
{
    return path.mid(systemFolders.size()).split('/').constFirst();
}

bool SysfsPlaces::isDriver(QByteArrayView path)
{
    constexpr QByteArrayView drivers = "/drivers";
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0 || !path.first(slash).endsWith(drivers))
        return false;
    return isStraightBelow("bus/", path.first(slash - drivers.size()));
}

bool SysfsPlaces::isSubsystem(QByteArrayView path)
{
    return isStraightBelow("bus/", path) || isStraightBelow("class/", path) || path == "block";
}

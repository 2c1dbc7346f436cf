#include "explorer/FoundEntryPaths.h"

#include "model/RegistryOrder.h"

FoundEntryPaths::FoundEntryPaths(const EntrySet &found, const QStringList &planes)
{
    found_.reserve(static_cast<std::size_t>(found.size()));
    for (TavRegistryEntry *entry : found)
        found_.push_back(entry->shared_from_this());
    for (const QString &plane : planes)
        planes_.push_back({plane, nullptr});
    std::stable_sort(planes_.begin(), planes_.end(), [](const Plane &a, const Plane &b) {
        return compareRegistryPlaneForUI(a.name, b.name) < 0;
    });
}

const FoundPathsInPlane &FoundEntryPaths::pathsIn(const Plane &plane) const
{
    if (!plane.paths)
        plane.paths = std::make_unique<FoundPathsInPlane>(plane.name, found_);
    return *plane.paths;
}

FoundEntryPaths::Path FoundEntryPaths::firstAfter(const TavRegistryEntryPath &path,
                                                  bool orEqual) const
{
    for (const Plane &plane : planes_) {
        const int order = compareRegistryPlaneForUI(path.plane(), plane.name);
        if (order > 0)
            continue;
        const FoundPathsInPlane &paths = pathsIn(plane);
        const std::size_t next = order < 0 ? 0
                                 : orEqual ? paths.countBefore(path)
                                           : paths.countNotAfter(path);
        if (next < paths.size())
            return paths.at(next);
    }
    return std::nullopt;
}

FoundEntryPaths::Path FoundEntryPaths::lastBefore(const TavRegistryEntryPath &path,
                                                  bool orEqual) const
{
    for (auto plane = planes_.rbegin(); plane != planes_.rend(); ++plane) {
        const int order = compareRegistryPlaneForUI(path.plane(), plane->name);
        if (order < 0)
            continue;
        const FoundPathsInPlane &paths = pathsIn(*plane);
        const std::size_t count = order > 0 ? paths.size()
                                  : orEqual ? paths.countNotAfter(path)
                                            : paths.countBefore(path);
        if (count > 0)
            return paths.at(count - 1);
    }
    return std::nullopt;
}

FoundEntryPaths::Path FoundEntryPaths::first() const
{
    for (const Plane &plane : planes_) {
        if (!pathsIn(plane).isEmpty())
            return pathsIn(plane).at(0);
    }
    return std::nullopt;
}

FoundEntryPaths::Path FoundEntryPaths::last() const
{
    for (auto plane = planes_.rbegin(); plane != planes_.rend(); ++plane) {
        if (!pathsIn(*plane).isEmpty())
            return pathsIn(*plane).at(pathsIn(*plane).size() - 1);
    }
    return std::nullopt;
}

FoundEntryPaths::Path FoundEntryPaths::pathInPlane(const QString &plane, bool isLast) const
{
    const auto shown = std::find_if(planes_.begin(), planes_.end(),
                                    [&](const Plane &known) { return known.name == plane; });
    if (shown == planes_.end() || pathsIn(*shown).isEmpty())
        return std::nullopt;
    return pathsIn(*shown).at(isLast ? pathsIn(*shown).size() - 1 : 0);
}

FoundEntryPaths::Path FoundEntryPaths::firstInPlane(const QString &plane) const
{
    return pathInPlane(plane, false);
}

FoundEntryPaths::Path FoundEntryPaths::lastInPlane(const QString &plane) const
{
    return pathInPlane(plane, true);
}

bool FoundEntryPaths::hasPathsAfterPlane(const QString &plane) const
{
    return std::any_of(planes_.begin(), planes_.end(), [&](const Plane &known) {
        return compareRegistryPlaneForUI(plane, known.name) < 0 && !pathsIn(known).isEmpty();
    });
}

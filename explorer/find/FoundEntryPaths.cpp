// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FoundEntryPaths.h"

#include "model/RegistryOrder.h"

namespace {
constexpr int highestClimb = 1000;

// Whether the first parents lead to the top; false if that is not certain.
bool climbsToATop(const TavRegistryEntry &entry, const QString &plane)
{
    const TavRegistryEntry *at = &entry;
    for (int step = 0; step < highestClimb && !at->parentsInPlane(plane).empty(); ++step)
        at = at->parentsInPlane(plane).front();
    return at->numParents() == 0;
}
} // namespace

FoundEntryPaths::FoundEntryPaths(const EntrySet &found, const QStringList &planes)
{
    // In the order of their addresses, which is the fastest to visit.
    EntryList::Entries entries(found.begin(), found.end());
    std::sort(entries.begin(), entries.end(), std::less<>());
    found_.reserve(entries.size());
    for (TavRegistryEntry *entry : entries)
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

bool FoundEntryPaths::isEmpty() const
{
    return std::none_of(planes_.begin(), planes_.end(),
                        [&](const Plane &plane) { return hasPathsIn(plane); });
}

bool FoundEntryPaths::hasPathsAfterPlane(const QString &plane) const
{
    return std::any_of(planes_.begin(), planes_.end(), [&](const Plane &known) {
        return compareRegistryPlaneForUI(plane, known.name) < 0 && hasPathsIn(known);
    });
}

// The first entry with a parent in the plane usually decides.
bool FoundEntryPaths::hasPathsIn(const Plane &plane) const
{
    if (plane.paths)
        return !plane.paths->isEmpty();
    const auto found = std::find_if(found_.begin(), found_.end(), [&](const EntryRef &entry) {
        return !entry->parentsInPlane(plane.name).empty();
    });
    if (found == found_.end())
        return false;
    return climbsToATop(**found, plane.name) || !pathsIn(plane).isEmpty();
}

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/find/FoundPathsInPlane.h"

// Every path of the entries that a search found, sorted by plane, then in the plane's order. The
// paths of a plane are computed on first use.
class FoundEntryPaths
{
public:
    FoundEntryPaths(const EntrySet &found, const QStringList &planes);

    using Path = std::optional<TavRegistryEntryPath>; // none where there is none
    // The nearest path after or before the given one, or equal to it where that is allowed.
    Path firstAfter(const TavRegistryEntryPath &path, bool orEqual) const;
    Path lastBefore(const TavRegistryEntryPath &path, bool orEqual) const;
    Path first() const;
    Path last() const;
    Path firstInPlane(const QString &plane) const;
    Path lastInPlane(const QString &plane) const;
    // Without computing the paths.
    bool isEmpty() const;
    bool hasPathsAfterPlane(const QString &plane) const;

private:
    struct Plane
    {
        QString name;
        mutable std::unique_ptr<FoundPathsInPlane> paths;
    };

    const FoundPathsInPlane &pathsIn(const Plane &plane) const;
    bool hasPathsIn(const Plane &plane) const;
    Path pathInPlane(const QString &plane, bool isLast) const;

    std::vector<EntryRef> found_;
    std::vector<Plane> planes_;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

// Limits of a snapshot. A file can repeat one long name many times, while names are joined for
// display and compared for sorting, and each plane takes a pass over all entries. No real registry
// comes near any limit.
struct SnapshotLimits
{
    static constexpr qsizetype maxPlanes = 256;
    static constexpr qsizetype maxClasses = 256;  // of one entry
    static constexpr qsizetype maxNameSize = 510; // the service takes no longer plane

    static bool allowName(const QString &name) { return name.size() <= maxNameSize; }
    static bool allowPlanes(const QStringList &planes) { return allow(planes, maxPlanes); }
    static bool allowClasses(const QStringList &classes) { return allow(classes, maxClasses); }

private:
    static bool allow(const QStringList &names, qsizetype maxCount)
    {
        return names.size() <= maxCount && std::all_of(names.begin(), names.end(), allowName);
    }
};

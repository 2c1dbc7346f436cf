#pragma once

#include <QStringList>

// What a snapshot may tell of planes. A file can refer to one long name over and over, and each
// plane costs a look at every entry; no registry comes near either limit.
struct PlaneLimits
{
    static constexpr qsizetype mostPlanes = 256;
    static constexpr qsizetype longestName = 510; // a longer one cannot be asked about

    static bool allowName(const QString &plane) { return plane.size() <= longestName; }
    static bool allow(const QStringList &planes)
    {
        return planes.size() <= mostPlanes && std::all_of(planes.begin(), planes.end(), allowName);
    }
};

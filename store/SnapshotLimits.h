#pragma once

#include <QStringList>

// What a snapshot may tell. A file can refer to one long name over and over, while names are put
// together to be shown and compared to be sorted, and each plane costs a look at every entry; no
// registry comes near any limit.
struct SnapshotLimits
{
    static constexpr qsizetype mostPlanes = 256;
    static constexpr qsizetype mostClasses = 256; // of one entry
    static constexpr qsizetype longestName = 510; // a longer one of a plane cannot be asked about

    static bool allowName(const QString &name) { return name.size() <= longestName; }
    static bool allowPlanes(const QStringList &planes) { return allow(planes, mostPlanes); }
    static bool allowClasses(const QStringList &classes) { return allow(classes, mostClasses); }

private:
    static bool allow(const QStringList &names, qsizetype most)
    {
        return names.size() <= most && std::all_of(names.begin(), names.end(), allowName);
    }
};

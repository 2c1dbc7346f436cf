#pragma once

#include <QHash>
#include <QString>
#include <vector>

// The links between entries that an archive claims, in one direction, to be looked at before
// anyone follows them: whoever does trusts that there are no cycles, and visits every path.
class PlaneLinks
{
public:
    enum class Finding : quint8 { Sound, Cycle, TooManyPaths };
    enum class Direction : quint8 { ToChildren, ToParents };

    // Of a plane, all entries' paths from the top counted together. A few entries with two parents
    // each can have more paths than there is memory, and no machine comes near this.
    static constexpr quint64 pathLimit(std::size_t entryCount)
    {
        return 1'000'000 + 16 * entryCount;
    }

    // Entries are numbers; no entry is added twice to a plane.
    void add(const QString &plane, quint32 entry, const std::vector<quint32> &relatives);
    // Of the first plane that is not sound. Linear in the number of links.
    Finding check(Direction direction, std::size_t entryCount) const;

private:
    using Lists = std::vector<quint32>; // for each entry: itself, the number of relatives, they
    class Untangler;

    QHash<QString, Lists> planes_;
};

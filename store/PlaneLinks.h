#pragma once

#include <QHash>
#include <QString>
#include <vector>

// The links between entries that an archive claims, in one direction, to be looked at for cycles:
// whoever follows links trusts that there are none.
class PlaneLinks
{
public:
    // Entries are numbers; no entry is added twice to a plane.
    void add(const QString &plane, quint32 entry, const std::vector<quint32> &relatives);
    // Whether any plane has a cycle. Linear in the number of links.
    bool haveCycle(std::size_t entryCount) const;

private:
    using Lists = std::vector<quint32>; // for each entry: itself, the number of relatives, they
    class Untangler;

    QHash<QString, Lists> planes_;
};

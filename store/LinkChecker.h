#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <vector>

// The links between entries in one direction, as an archive claims them or is to hold them, to be
// looked at before anyone follows them: whoever does trusts that there are no cycles, and visits
// every path.
class LinkChecker
{
public:
    enum class Finding : quint8 { Sound, Cycle, TooManyPaths };
    enum class Direction : quint8 { ToChildren, ToParents };
    using Link = std::pair<quint32, quint32>; // an entry and one of its relatives
    using LinkSets = QHash<QString, QSet<Link>>;

    // Of a plane, all entries' paths from the top counted together. A few entries with two parents
    // each can have more paths than there is memory, and no machine comes near this.
    static constexpr quint64 pathLimit(std::size_t entryCount)
    {
        return 1'000'000 + 16 * entryCount;
    }

    explicit LinkChecker(Direction direction)
        : direction_(direction)
    {}

    // Entries are numbers; no entry is added twice to a plane.
    void add(const QString &plane, quint32 entry, const std::vector<quint32> &relatives);
    // Of the first plane that is not sound. Linear in the number of links and the highest number.
    Finding check(quint64 mostPaths) const;
    // By plane, links without which there are no cycles. What lies below the entry of the lowest
    // number does so without them.
    LinkSets closingLinks() const;

private:
    using Lists = std::vector<quint32>; // for each entry: itself, the number of relatives, they
    class Untangler;
    class CycleFinder;

    template<class Action>
    static void forEach(const Lists &lists, Action action); // with where an entry's list starts

    Direction direction_;
    quint32 highest_ = 0; // of the numbers
    QHash<QString, Lists> planes_;
};

template<class Action>
void LinkChecker::forEach(const Lists &lists, Action action)
{
    for (std::size_t position = 0; position < lists.size(); position += 2 + lists[position + 1])
        action(position);
}

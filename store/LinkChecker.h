// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <vector>

// The links between entries in one direction, read from an archive or to be written. Checks them
// before use: the rest of the program visits every path and relies on the absence of cycles.
class LinkChecker
{
public:
    enum class Finding : quint8 { Sound, Cycle, TooManyPaths };
    enum class Direction : quint8 { ToChildren, ToParents };
    using Link = std::pair<quint32, quint32>; // an entry and one of its relatives
    using LinkSets = QHash<QString, QSet<Link>>;

    // The limit for the paths of all entries of a plane together. A few entries with two parents
    // each can have more paths than fit in memory; real machines stay far below.
    static constexpr quint64 pathLimit(std::size_t entryCount)
    {
        return 1'000'000 + 16 * entryCount;
    }

    explicit LinkChecker(Direction direction)
        : direction_(direction)
    {}

    // Entries are numbers. Add each entry once per plane.
    void add(const QString &plane, quint32 entry, const std::vector<quint32> &relatives);
    // The first fault in any plane. Linear in the number of links and the highest number.
    Finding check(quint64 maxPaths) const;
    // By plane, the links to drop to break all cycles. Entries below the entry with the lowest
    // number stay below it.
    LinkSets closingLinks() const;

private:
    // For each entry: itself, the number of relatives, the relatives.
    using Lists = std::vector<quint32>;
    class Untangler;
    class CycleFinder;

    template<class Action>
    // Called with the start of each entry's list.
    static void forEach(const Lists &lists, Action action);

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

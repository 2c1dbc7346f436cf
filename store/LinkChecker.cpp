// SPDX-License-Identifier: Apache-2.0
#include "store/LinkChecker.h"

#include <span>

// Repeatedly removes entries without incoming links. Links that remain are part of a cycle or lead
// to one; without cycles, the order of removal serves to count paths.
class LinkChecker::Untangler
{
public:
    Untangler(std::size_t size, quint64 maxPaths)
        : start_(size)
        , leadingTo_(size)
        , paths_(size)
        , maxPaths_(maxPaths)
    {}

    Finding check(const Lists &lists, Direction direction)
    {
        std::size_t links = takeIn(lists);
        for (std::size_t i = 0; i < order_.size(); ++i) {
            for (const quint32 relative : relatives(lists, order_[i])) {
                --links;
                if (--leadingTo_[relative] == 0)
                    order_.push_back(relative);
            }
        }
        if (links > 0)
            return Finding::Cycle;
        const bool isFew =
            direction == Direction::ToChildren ? areFewDownwards(lists) : areFewUpwards(lists);
        forEach(lists, [&](std::size_t position) { start_[lists[position]] = 0; });
        return isFew ? Finding::Sound : Finding::TooManyPaths;
    }

private:
    // Returns the number of links; order_ then starts with the entries without incoming links.
    std::size_t takeIn(const Lists &lists)
    {
        std::size_t links = 0;
        order_.clear();
        forEach(lists, [&](std::size_t position) {
            start_[lists[position]] = position + 1;
            links += lists[position + 1];
            for (std::size_t i = 0; i < lists[position + 1]; ++i)
                ++leadingTo_[lists[position + 2 + i]];
        });
        forEach(lists, [&](std::size_t position) {
            if (leadingTo_[lists[position]] == 0)
                order_.push_back(lists[position]);
        });
        return links;
    }

    // An entry has the paths of all its parents, which precede it.
    bool areFewDownwards(const Lists &lists)
    {
        for (const quint32 entry : order_)
            paths_[entry] = 0;
        quint64 left = maxPaths_;
        for (const quint32 entry : order_) {
            const quint64 paths = std::max<quint64>(1, paths_[entry]);
            if (paths > left)
                return false;
            left -= paths;
            for (const quint32 child : relatives(lists, entry))
                paths_[child] += paths;
        }
        return true;
    }

    // The parents follow.
    bool areFewUpwards(const Lists &lists)
    {
        quint64 left = maxPaths_;
        for (auto entry = order_.rbegin(); entry != order_.rend(); ++entry) {
            quint64 paths = 0;
            for (const quint32 parent : relatives(lists, *entry))
                paths += paths_[parent];
            paths_[*entry] = std::max<quint64>(1, paths);
            if (paths > left)
                return false;
            left -= paths;
        }
        return true;
    }

    std::span<const quint32> relatives(const Lists &lists, quint32 entry) const
    {
        const std::size_t start = start_[entry];
        if (start == 0)
            return {};
        return {lists.data() + start + 1, lists[start]};
    }

    std::vector<std::size_t> start_; // by entry: 1 + position of its list; 0: none in this plane
    std::vector<quint32> leadingTo_; // by entry: number of incoming links; all 0 between planes
    std::vector<quint64> paths_;     // by entry
    std::vector<quint32> order_;     // topological order of a plane
    quint64 maxPaths_;
};

void LinkChecker::add(const QString &plane, quint32 entry, const std::vector<quint32> &relatives)
{
    Lists &lists = planes_[plane];
    lists.push_back(entry);
    lists.push_back(static_cast<quint32>(relatives.size()));
    lists.insert(lists.end(), relatives.begin(), relatives.end());
    highest_ = std::max(highest_, entry);
    for (const quint32 relative : relatives)
        highest_ = std::max(highest_, relative);
}

LinkChecker::Finding LinkChecker::check(quint64 maxPaths) const
{
    Untangler untangler(highest_ + std::size_t(1), maxPaths);
    for (const Lists &lists : planes_) {
        const Finding finding = untangler.check(lists, direction_);
        if (finding != Finding::Sound)
            return finding;
    }
    return Finding::Sound;
}

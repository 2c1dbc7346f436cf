// SPDX-License-Identifier: Apache-2.0
// Finding cycles.
#include "store/LinkChecker.h"

#include <map>

// Walks a plane top down. A link back to an entry of the current path closes a cycle.
class LinkChecker::CycleFinder
{
public:
    explicit CycleFinder(Direction direction)
        : isDownwards_(direction == Direction::ToChildren)
    {}

    void add(quint32 entry, quint32 relative)
    {
        isDownwards_ ? below_[entry].push_back(relative) : below_[relative].push_back(entry);
    }

    QSet<Link> closingLinks()
    {
        for (const auto &[top, below] : below_)
            walk(top);
        return closing_;
    }

private:
    enum class State : quint8 { Unseen, OnWay, Done };
    struct Step
    {
        quint32 entry;
        std::size_t next;
    };

    void walk(quint32 top)
    {
        enter(top);
        while (!way_.empty()) {
            auto &[entry, next] = way_.back();
            const std::vector<quint32> &below = below_[entry];
            if (next == below.size()) {
                states_[entry] = State::Done;
                way_.pop_back();
            } else {
                const quint32 child = below[next++];
                if (states_.value(child) == State::OnWay)
                    closing_.insert(isDownwards_ ? Link(entry, child) : Link(child, entry));
                else
                    enter(child);
            }
        }
    }

    void enter(quint32 entry)
    {
        State &state = states_[entry];
        if (state == State::Unseen) {
            state = State::OnWay;
            way_.push_back({entry, 0});
        }
    }

    std::map<quint32, std::vector<quint32>> below_; // by entry
    QHash<quint32, State> states_;
    std::vector<Step> way_;
    QSet<Link> closing_;
    bool isDownwards_;
};

LinkChecker::LinkSets LinkChecker::closingLinks() const
{
    LinkSets closing;
    for (auto plane = planes_.begin(); plane != planes_.end(); ++plane) {
        const Lists &lists = plane.value();
        CycleFinder finder(direction_);
        forEach(lists, [&](std::size_t position) {
            for (std::size_t i = 0; i < lists[position + 1]; ++i)
                finder.add(lists[position], lists[position + 2 + i]);
        });
        closing.insert(plane.key(), finder.closingLinks());
    }
    return closing;
}

// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FoundPathsInPlane.h"

#include <algorithm>
#include <limits>

namespace {
constexpr auto noPosition = std::numeric_limits<std::size_t>::max();

// A document may contain more paths to an entry than can be counted; nobody steps through that
// many.
constexpr std::size_t maxPositions = 4'000'000;
} // namespace

// Climbs from the found entries to the roots, then walks down in the order of the paths: a path
// before those that continue it, siblings in the plane's order.
class FoundPathsInPlane::Builder
{
public:
    explicit Builder(FoundPathsInPlane &paths)
        : paths_(paths)
    {}

    void build(const std::vector<EntryRef> &found)
    {
        climb(found);
        TavRegistryEntry::sortForPlane(tops_, paths_.plane_);
        for (Stage &stage : stages_)
            TavRegistryEntry::sortForPlane(stage.below, paths_.plane_);
        for (TavRegistryEntry *top : tops_)
            walk(top);
    }

private:
    struct Stage
    {
        TavRegistryEntry *entry;
        const EntryList::Entries *parents;
        EntryList::Entries below; // that lead to what was found
        bool isFound = false;
        bool isOnWay = false;
    };
    struct Step
    {
        std::size_t stage;
        std::size_t position;
        std::size_t next;
    };

    // Siblings usually follow each other and have the same parent.
    Stage &stageOf(TavRegistryEntry *entry)
    {
        if (last_ < stages_.size() && stages_[last_].entry == entry)
            return stages_[last_];
        const auto known = numbers_.constFind(entry);
        last_ = known != numbers_.constEnd() ? *known : stages_.size();
        return last_ < stages_.size() ? stages_[last_]
                                      : addStage(entry, entry->parentsInPlane(paths_.plane_));
    }

    Stage &addStage(TavRegistryEntry *entry, const EntryList::Entries &parents)
    {
        numbers_.insert(entry, stages_.size());
        paths_.kept_.push_back(entry->shared_from_this());
        return stages_.emplace_back(Stage{entry, &parents, {}});
    }

    void climb(const std::vector<EntryRef> &found)
    {
        numbers_.reserve(static_cast<qsizetype>(found.size()));
        stages_.reserve(found.size());
        paths_.kept_.reserve(found.size());
        for (const EntryRef &entry : found) {
            const auto &parents = entry->parentsInPlane(paths_.plane_);
            if (!parents.empty())
                addStage(entry.get(), parents).isFound = true;
        }
        // The list grows during the loop.
        for (std::size_t i = 0; i < stages_.size(); ++i) {
            TavRegistryEntry *const entry = stages_[i].entry;
            const EntryList::Entries &parents = *stages_[i].parents;
            if (parents.empty() && entry->numParents() == 0)
                tops_.push_back(entry);
            for (TavRegistryEntry *parent : parents)
                stageOf(parent).below.push_back(entry);
        }
    }

    void walk(TavRegistryEntry *top)
    {
        enter(top, noPosition);
        while (!steps_.empty()) {
            Step &step = steps_.back();
            Stage &stage = stages_[step.stage];
            if (step.next == stage.below.size() || paths_.positions_.size() >= maxPositions) {
                stage.isOnWay = false;
                steps_.pop_back();
            } else {
                enter(stage.below[step.next++], step.position);
            }
        }
    }

    // Entries that were reread one by one can contradict each other: a path that returns to itself
    // ends.
    void enter(TavRegistryEntry *entry, std::size_t parent)
    {
        const std::size_t number = numbers_[entry];
        Stage &stage = stages_[number];
        if (stage.isOnWay)
            return;
        stage.isOnWay = true;
        const std::size_t position = paths_.positions_.size();
        paths_.positions_.push_back({entry, parent});
        if (stage.isFound)
            paths_.found_.push_back(position);
        steps_.push_back({number, position, 0});
    }

    FoundPathsInPlane &paths_;
    QHash<const TavRegistryEntry *, std::size_t> numbers_;
    std::vector<Stage> stages_;
    std::size_t last_ = 0; // the stage used last
    EntryList::Entries tops_;
    std::vector<Step> steps_;
};

FoundPathsInPlane::FoundPathsInPlane(const QString &plane, const std::vector<EntryRef> &found)
    : plane_(plane)
{
    Builder(*this).build(found);
}

TavRegistryEntryPath FoundPathsInPlane::pathTo(std::size_t position) const
{
    std::vector<EntryRef> entries;
    for (std::size_t at = position; at != noPosition; at = positions_[at].parent)
        entries.push_back(positions_[at].entry->shared_from_this());
    std::reverse(entries.begin(), entries.end());
    return TavRegistryEntryPath(plane_, std::move(entries));
}

template<class IsBefore>
std::size_t FoundPathsInPlane::countWhile(IsBefore isBefore) const
{
    const auto end = std::partition_point(found_.begin(), found_.end(), [&](std::size_t position) {
        return isBefore(pathTo(position));
    });
    return static_cast<std::size_t>(end - found_.begin());
}

std::size_t FoundPathsInPlane::countBefore(const TavRegistryEntryPath &path) const
{
    return countWhile([&](const auto &found) { return path.compareToEntryPath(found) > 0; });
}

std::size_t FoundPathsInPlane::countNotAfter(const TavRegistryEntryPath &path) const
{
    return countWhile([&](const auto &found) { return path.compareToEntryPath(found) >= 0; });
}

// SPDX-License-Identifier: Apache-2.0
// Stepping goes where a plain walk through all sorted paths of the matches leads.
#include "ExplorerFixture.h"

#include <random>
#include <set>

namespace {
using Path = TavRegistryEntryPath;
using MaybePath = std::optional<Path>;

class FindStepsTest : public ExplorerFixture
{
protected:
    // Entries with several parents, names that differ by case or not at all, several planes.
    void makeRegistry()
    {
        std::vector<FakeRegistry::Node> nodes{service_.add(QStringLiteral("DxRoot"), "Root")};
        service_.setRoot(nodes.front());
        for (int i = 0; i < 60; ++i) {
            const QByteArray names[] = {"match", "Match", "a match", "other", "b", "zz"};
            nodes.push_back(service_.add(QStringLiteral("DxDevice"), names[number_() % 6]));
            for (const char *plane : {"DxService", "DxBus", "dxpower"}) {
                for (auto parents = number_() % 3; parents > 0; --parents)
                    link(nodes[number_() % (nodes.size() - 1)], nodes.back(), plane);
            }
        }
        service_.publishPlanes();
    }
    void link(FakeRegistry::Node parent, FakeRegistry::Node child, const QByteArray &plane)
    {
        if (!links_.contains({parent, child, plane}))
            service_.link(parent, child, plane);
        links_.insert({parent, child, plane});
    }

    std::vector<Path> foundPaths() const
    {
        std::vector<Path> paths;
        for (TavRegistryEntry *found : *controller_->foundObjects()) {
            for (Path &path : found->allEntryPaths())
                paths.push_back(std::move(path));
        }
        std::sort(paths.begin(), paths.end(),
                  [](const Path &a, const Path &b) { return a.compareToEntryPath(b) < 0; });
        return paths;
    }
    MaybePath walkForward(const std::vector<Path> &found, bool samePlane, bool mustAdvance) const
    {
        const Path selected = *controller_->selectedEntryPath();
        const auto isIn = [&](const QString &plane) {
            return [&, samePlane](const Path &path) { return !samePlane || path.plane() == plane; };
        };
        const auto next = std::find_if(found.begin(), found.end(), [&](const Path &path) {
            const int order = selected.compareToEntryPath(path);
            return order < 0 || (order == 0 && !mustAdvance);
        });
        if (next != found.end() && isIn(controller_->registryPlane())(*next))
            return *next;
        const auto first = std::find_if(found.begin(), found.end(), isIn(selected.plane()));
        return first == found.end() ? MaybePath() : *first;
    }
    MaybePath walkBackward(const std::vector<Path> &found, bool samePlane, bool mustAdvance) const
    {
        const Path selected = *controller_->selectedEntryPath();
        for (auto path = found.rbegin(); path != found.rend(); ++path) {
            const int order = selected.compareToEntryPath(*path);
            if (order < 0 || (order == 0 && mustAdvance))
                continue;
            const bool isElsewhere = path->plane() != controller_->registryPlane();
            return samePlane && isElsewhere ? std::nullopt : MaybePath(*path);
        }
        if (!samePlane)
            return found.empty() ? std::nullopt : MaybePath(found.back());
        MaybePath remembered;
        for (const Path &path : found) {
            if (path.plane() == selected.plane())
                remembered = path;
            else if (remembered)
                return remembered;
        }
        return std::nullopt;
    }
    static std::string textOf(const MaybePath &path)
    {
        std::string text = path ? path->plane().toStdString() : "none";
        for (std::size_t i = 0; path && i < path->length(); ++i)
            text += '/' + std::to_string(path->registryEntryAtIndex(i)->entryTag());
        return text;
    }

    std::mt19937 number_{11};
    std::set<std::tuple<FakeRegistry::Node, FakeRegistry::Node, QByteArray>> links_;
};
} // namespace

TEST_F(FindStepsTest, StepsEqualAWalkThroughAllPaths)
{
    makeRegistry();
    prefer("FindOptions", 1);
    open();
    ASSERT_EQ(store_->registryPlanes().size(), 3);
    std::vector<Path> places;
    for (const EntryRef &entry : store_->registryEntries()) {
        for (const Path &path : entry->allEntryPaths())
            places.push_back(path);
    }
    for (const char *query : {"match", "a match", "zz", "Root", "nothing"}) {
        controller_->findWithString(QString::fromLatin1(query));
        const auto found = foundPaths();
        for (int i = 0; i < 40; ++i) {
            controller_->goToEntryPath(places[number_() % places.size()], false, false);
            if (i % 4 == 0) // between choosing a plane and going to a place in it
                controller_->setRegistryPlane(store_->registryPlanes()[i / 4 % 3], true);
            for (int flags = 0; flags < 4; ++flags) {
                const bool samePlane = flags & 1;
                const bool mustAdvance = flags & 2;
                ASSERT_EQ(textOf(controller_->nextFindPathInPlane(samePlane, mustAdvance)),
                          textOf(walkForward(found, samePlane, mustAdvance)))
                    << query << ' ' << flags;
                ASSERT_EQ(textOf(controller_->prevFindPathInPlane(samePlane, mustAdvance)),
                          textOf(walkBackward(found, samePlane, mustAdvance)))
                    << query << ' ' << flags;
            }
        }
    }
}

TEST_F(FindStepsTest, BeginsWithThePlaneWhenNothingIsSelected)
{
    plantDisks();
    prefer("FindOptions", 1);
    open();
    find("part");
    selectNothing();
    ASSERT_FALSE(controller_->selectedEntryPath().has_value());
    EXPECT_FALSE(controller_->prevFindPathInPlane(true, true).has_value());
    controller_->findNext();
    EXPECT_EQ(selected(), "DxService:/bus/disk@0/part@1");
}

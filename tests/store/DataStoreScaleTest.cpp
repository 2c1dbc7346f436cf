// SPDX-License-Identifier: Apache-2.0
#include "model/TavRegistryEntryPath.h"
#include "store/TavDataStore.h"
#include "tests/support/FakeRegistryService.h"
#include "tests/support/SmallStack.h"

#include <ctime>
#include <gtest/gtest.h>

namespace {
const QString plane = QStringLiteral("DxService");
constexpr quint32 few = 5'000;
constexpr quint32 many = 8 * few;
// Eight times the entries may cost three times eight times the work, not sixty-four times.
constexpr double maxTimes = 24;

enum Shape { Wide, Deep };

// A host whose devices all share one child, or form a chain. Returns the tag of the last one.
quint64 makeRegistry(FakeRegistryService &service, Shape shape, quint32 count)
{
    const QString device = QStringLiteral("DxDevice");
    service.addClassChain({device, QStringLiteral("DxService")});
    service.setRoot(service.add(device, "Root"));
    auto parent = service.add(device, "Host");
    service.link(service.root(), parent, "DxService");
    const auto last = service.add(device, "last");
    for (quint32 i = 0; i < count; ++i) {
        const auto node = service.add(device, "device", QByteArray::number(i * 7919 % count));
        service.link(parent, node, "DxService");
        if (shape == Wide)
            service.link(node, last, "DxService");
        else
            parent = node;
    }
    if (shape == Deep)
        service.link(parent, last, "DxService");
    service.publishPlanes();
    return last;
}

// The processor time of each step, by name.
class Times
{
public:
    template<class Action>
    void add(const char *step, Action action)
    {
        const std::clock_t start = std::clock();
        action();
        steps_.emplace_back(step, static_cast<double>(std::clock() - start));
    }
    void expectLinear(const Times &fewer) const
    {
        constexpr double granularity = CLOCKS_PER_SEC / 200.0;
        for (std::size_t i = 0; i < steps_.size(); ++i)
            EXPECT_LT(steps_[i].second, maxTimes * (fewer.steps_[i].second + granularity))
                << steps_[i].first;
    }

private:
    std::vector<std::pair<const char *, double>> steps_;
};

// Everything that views read of a large registry, timed.
Times measure(Shape shape, quint32 count)
{
    FakeRegistryService service;
    const quint64 lastTag = makeRegistry(service, shape, count);
    const quint32 ways = shape == Wide ? count : 1; // up from the last
    Times times;
    std::unique_ptr<TavDataStore> store;
    times.add("capture", [&] { store = TavDataStore::initFromDxRegistry(service); });
    const auto &entries = store->registryEntries();
    EXPECT_EQ(entries.size(), count + 3U);
    times.add("update", [&] { store->update(); });
    TavRegistryEntry &last = **std::find_if(
        entries.begin(), entries.end(), [&](auto &entry) { return entry->entryTag() == lastTag; });
    QStringList paths;
    times.add("path strings", [&] { paths = last.registryPathsInPlane(plane); });
    EXPECT_EQ(paths.size(), ways);
    times.add("entry paths", [&] {
        const auto entryPaths = last.entryPathsInPlane(plane);
        EXPECT_EQ(entryPaths.size(), ways);
        EXPECT_EQ(entryPaths.front().length(), shape == Wide ? 4 : count + 3);
        EXPECT_FALSE(entryPaths.front().registryPath().isEmpty());
    });
    times.add("counts", [&] { EXPECT_EQ(last.getNumRegistryPaths().paths, ways); });
    times.add("ancestors", [&] { EXPECT_EQ(last.allAncestorsInPlane(plane).size(), count + 2); });
    times.add("descendants", [&] {
        EXPECT_EQ(store->registryRoot()->allDescendantsInPlane(plane).size(), count + 2);
    });
    paths.front().remove(QStringLiteral("/Host"));
    times.add("look-up", [&] {
        EXPECT_EQ(store->entriesMatchingRegistryPath(paths.front()).entries, EntrySet{&last});
    });
    times.add("terminate and clear", [&] {
        for (std::size_t i = 2; i < entries.size(); i += 2)
            entries[i]->noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), true);
        store->clearTerminatedObjects();
        EXPECT_LT(entries.size(), count / 2 + 5);
    });
    return times;
}
} // namespace

TEST(DataStoreScale, ManyChildrenAndParentsTakeLinearTime)
{
    const Times fewer = measure(Wide, few);
    measure(Wide, many).expectLinear(fewer);
}

TEST(DataStoreScale, DeepChainsTakeLinearTimeAndNoStack)
{
    onSmallStack([] {
        const Times fewer = measure(Deep, few);
        measure(Deep, many).expectLinear(fewer);
    });
}

// The number of paths doubles at every step: they are counted, not walked.
TEST(DataStoreScale, CountsWaysUpWithoutWalkingAll)
{
    std::vector<EntryRef> entries{TavRegistryEntry::createEmpty()};
    entries.front()->setIsRegistryRoot(true);
    TavRegistryEntry *rung = entries.front().get();
    const auto add = [&] { return entries.emplace_back(TavRegistryEntry::createEmpty()).get(); };
    for (int i = 1; i <= 70; ++i) {
        TavRegistryEntry *const next = add();
        for (int side = 0; side < 2; ++side) {
            TavRegistryEntry *const middle = add();
            rung->addChild(*middle, plane);
            middle->addChild(*next, plane);
        }
        rung = next;
        if (i == 40) {
            EXPECT_EQ(rung->getNumRegistryPaths().paths, quint64(1) << 40);
            EXPECT_LT(rung->entryPathsInPlane(plane).size(), 100'000U);
            EXPECT_FALSE(rung->registryPathsInPlane(plane).isEmpty());
        }
    }
    EXPECT_EQ(rung->getNumRegistryPaths().paths, std::numeric_limits<quint64>::max());
}

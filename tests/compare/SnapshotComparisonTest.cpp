// SPDX-License-Identifier: Apache-2.0
#include "ComparedRegistries.h"
#include "compare/ComparisonStore.h"

namespace {
using namespace values;

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

constexpr auto machine = "Root\n"
                         "  Host\n"
                         "    bus@0\n"
                         "      disk@0\n"
                         "      disk@1\n"
                         "    net@0\n";
} // namespace

TEST(SnapshotComparison, ListsWhatWasAddedRemovedAndChanged)
{
    DescribedRegistry before(machine);
    DescribedRegistry after("Root\n"
                            "  Host\n"
                            "    bus@0\n"
                            "      disk@1\n"
                            "      tape@0\n"
                            "        reel\n"
                            "    net@0\n");
    before.with("net@0", dictionary({{"mtu", number(1500)}, {"old", text("a")}}));
    after.with("net@0", dictionary({{"mtu", number(9000)}, {"queues", array({number(1)})}}));
    EXPECT_EQ(differences(before, after),
              lines({"- /bus@0/disk@0", "+ /bus@0/tape@0", "+ /bus@0/tape@0/reel",
                     "* /net@0 mtu* queues+ old-"}));
    EXPECT_EQ(differences(before, before), QStringList());
    const SnapshotComparison comparison(before.store(), after.store(), {}, {});
    EXPECT_EQ(comparison.counts().differences(), 4U);
    EXPECT_EQ(comparison.counts().same, 4U);
}

TEST(SnapshotComparison, FollowsWhatMovedByWhatItKeeps)
{
    DescribedRegistry before("Root\n  Host\n    port@1\n      stick@a\n        part\n    port@2\n"
                             "    eth0\n    eth1\n");
    DescribedRegistry after("Root\n  Host\n    port@1\n    port@2\n      stick@b\n        part\n"
                            "    lan0\n    eth1\n");
    const auto card = [](const char *address) {
        return dictionary({{"subsystem", text("class/net")}, {"address", text(address)}});
    };
    before.with("stick@a", dictionary({{"serial", text("S1")}}));
    after.with("stick@b", dictionary({{"serial", text("S1")}}));
    before.with("eth0", card("3e:10:aa:bb:cc:d0"));
    after.with("lan0", card("3e:10:aa:bb:cc:d0"));
    EXPECT_EQ(differences(before, after),
              lines({"~ /lan0 eth0→lan0",
                     "> /port@2/stick@b a→b DxService:/port@1/stick@a→DxService:/port@2/stick@b"}));
}

TEST(SnapshotComparison, TakesNoMeaninglessIdentityForAnIdentity)
{
    DescribedRegistry before("Root\n  Host\n    a\n");
    DescribedRegistry after("Root\n  Host\n    b\n");
    before.with("a", dictionary({{"serial", text("To be filled by O.E.M.")}}));
    after.with("b", dictionary({{"serial", text("To be filled by O.E.M.")}}));
    EXPECT_EQ(differences(before, after), lines({"- /a", "+ /b"}));
}

TEST(SnapshotComparison, TakesAnotherNumberByDiscoveryForTheSameDevice)
{
    DescribedRegistry before("Root\n  Host\n    usb\n      input5\n        event3\n");
    DescribedRegistry after("Root\n  Host\n    usb\n      input7\n        event4\n");
    const auto input = [](const char *name, const char *node) {
        return dictionary({{"subsystem", text("class/input")},
                           {"modalias", text("input:b0003")},
                           {"path", text(name)},
                           {"uevent", dictionary({{"MINOR", text(node)}})}});
    };
    before.with("input5", input("/devices/usb/input5", "67"));
    after.with("input7", input("/devices/usb/input7", "68"));
    before.inSubsystem("event3", "class/input");
    after.inSubsystem("event4", "class/input");
    EXPECT_EQ(differences(before, after), QStringList());
    EXPECT_EQ(differences(before, after, {.showsVolatile = true}),
              lines({"~ /usb/input7 input5→input7 path* uevent/MINOR*",
                     "~ /usb/input7/event4 event3→event4"}));
}

TEST(SnapshotComparison, HidesWhatAlwaysChanges)
{
    DescribedRegistry before("Root\n  Host\n    eth0\n");
    DescribedRegistry after("Root\n  Host\n    eth0\n");
    const auto card = [](quint64 bytes, quint64 mtu) {
        return dictionary({{"subsystem", text("class/net")},
                           {"mtu", number(mtu)},
                           {"statistics", dictionary({{"rx_bytes", number(bytes)}})}});
    };
    before.with("eth0", card(1, 1500));
    after.with("eth0", card(2, 1500));
    EXPECT_EQ(differences(before, after), QStringList());
    EXPECT_EQ(differences(before, after, {.showsVolatile = true}),
              lines({"* /eth0 statistics/rx_bytes*"}));
    DescribedRegistry later("Root\n  Host\n    eth0\n");
    later.with("eth0", card(3, 9000));
    EXPECT_EQ(differences(before, later), lines({"* /eth0 mtu*"}));
    EXPECT_EQ(differences(before, later, {.ignoredKeys = {QStringLiteral("mtu")}}), QStringList());
}

TEST(SnapshotComparison, ComparesLinksInOtherPlanes)
{
    DescribedRegistry before(machine);
    DescribedRegistry after(machine);
    before.plane("DxPower", "Root\n  Host\n    bus@0\n      disk@0\n    net@0\n");
    after.plane("DxPower", "Root\n  Host\n    bus@0\n    net@0\n      disk@0\n");
    EXPECT_EQ(differences(before, after),
              lines({"* /bus@0/disk@0 DxPower:/bus@0/disk@0→DxPower:/net@0/disk@0"}));
}

TEST(ComparisonStore, ShowsRemovedEntriesWhereTheyWereAndKeepsTheOthers)
{
    DescribedRegistry before(machine);
    DescribedRegistry after("Root\n  Host\n    bus@0\n      disk@1\n    fan\n    net@0\n");
    const auto compared = [](std::shared_ptr<TavDataStore> older,
                             std::shared_ptr<TavDataStore> newer) {
        return std::make_shared<ComparisonStore::Compared>(std::move(older), std::move(newer),
                                                           SnapshotComparison::Options(),
                                                           SnapshotComparison::Reach());
    };
    const auto first = StoreBuilder::copyOf(before.store());
    const auto second = StoreBuilder::copyOf(after.store());
    ComparisonStore shown(compared(first, second));
    EXPECT_EQ(TreePrinter::plane(*shown.store(), QStringLiteral("DxService")),
              "Root\n  Host\n    bus@0\n      disk@0 (terminated)\n      disk@1\n    fan (new)\n"
              "    net@0\n");
    const auto find = [&](const char *path) {
        const auto found = shown.store()->entriesMatchingRegistryPath(QString::fromUtf8(path));
        return found.entries.isEmpty() ? nullptr : (*found.entries.begin())->shared_from_this();
    };
    const EntryRef removed = find("DxService:/bus@0/disk@0");
    EXPECT_EQ(removed->parentsInPlane(QStringLiteral("DxService")).size(), 1U);
    const EntryRef staying = find("DxService:/bus@0/disk@1");
    ASSERT_TRUE(removed && staying);
    EXPECT_EQ(removed->registryState(), RegistryStateTerminated);
    EXPECT_EQ(find("DxService:/fan")->registryState(), RegistryStateNew);
    EXPECT_EQ(shown.differencesBelow(*shown.store()->registryRoot(), QStringLiteral("DxService")),
              2U);
    EXPECT_EQ(shown.differenceOf(*removed).kind, DifferenceKind::Removed);

    shown.show(compared(second, second));
    EXPECT_TRUE(find("DxService:/bus@0/disk@1") == staying);
    EXPECT_FALSE(find("DxService:/bus@0/disk@0"));
    EXPECT_EQ(find("DxService:/fan")->registryState(), RegistryStateUnchanged);
    EXPECT_EQ(shown.comparison().counts().differences(), 0U);
}

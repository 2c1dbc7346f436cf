// SPDX-License-Identifier: Apache-2.0
#include "model/TavRegistryEntryPath.h"
#include "tests/support/RegistryTest.h"

static const QString powerPlane = QStringLiteral("DxPower");

using RegistryEntryLinksTest = RegistryTest;

TEST_F(RegistryEntryLinksTest, ChildrenAreSortedWithoutCaseThenByTag)
{
    tree_.plane("DxService", R"(
        Root
          Host
            disk@1
            Disk@0
            eth #late
            ETH #early
            audio
            disk@10
    )");
    service_.setEntryID(tree_["late"], 2000);
    service_.setEntryID(tree_["early"], 1000);
    capture();
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            audio
            Disk@0
            disk@1
            disk@10
            ETH
            eth
    )"));
}

TEST_F(RegistryEntryLinksTest, AnEntryMayHaveSeveralParentsInSeveralPlanesAndMove)
{
    tree_.plane("DxService", R"(
        Root
          Host
            disk
            fan
    )");
    tree_.plane("DxPower", R"(
        Root
          Host
            fan
              disk
            rail
              disk
    )");
    capture();
    const TavRegistryEntry &disk = entry("disk");
    EXPECT_EQ(entry("Root").numParents(), 0U);
    EXPECT_EQ(entry("Host").numParents(), 2U);
    EXPECT_EQ(disk.numParents(), 3U);
    EXPECT_EQ(disk.parentsInPlane(powerPlane).size(), 2U);
    EXPECT_TRUE(disk.parentsInPlane(QStringLiteral("DxNone")).empty());
    EXPECT_EQ(disk.allAncestorsInPlane(powerPlane),
              (EntrySet{&entry("Root"), &entry("Host"), &entry("fan"), &entry("rail")}));
    EXPECT_EQ(entry("Host").allDescendantsInPlane(powerPlane),
              (EntrySet{&entry("disk"), &entry("fan"), &entry("rail")}));
    EXPECT_TRUE(disk.allDescendantsInPlane(powerPlane).isEmpty());
    service_.unlink(tree_["Host"], tree_["disk"], "DxService");
    service_.link(tree_["fan"], tree_["disk"], "DxService");
    store_->update();
    EXPECT_EQ(printed(), "Root\n  Host\n    fan\n      disk\n");
    EXPECT_EQ(disk.parentsInPlane(servicePlane), EntryList::Entries{&entry("fan")});
    EXPECT_EQ(disk.registryState(), RegistryStateUnchanged);

    EXPECT_EQ(entry("Host").childrenWithNameAtLocation(QStringLiteral("fan"), powerPlane),
              EntryList::Entries{&entry("fan")});
    EXPECT_TRUE(
        entry("Host").childrenWithNameAtLocation(QStringLiteral("FAN"), powerPlane).empty());
}

// Entries reread one by one may disagree about who is above whom.
TEST_F(RegistryEntryLinksTest, WalksEndWhereSingleUpdatesClosedACycle)
{
    tree_.plane("DxService", R"(
        Root
          Host
            above
              below
    )");
    capture();
    TavRegistryEntry &above = entry("above");
    TavRegistryEntry &below = entry("below");
    service_.unlink(tree_["above"], tree_["below"], "DxService");
    service_.unlink(tree_["Host"], tree_["above"], "DxService");
    service_.link(tree_["Host"], tree_["below"], "DxService");
    service_.link(tree_["below"], tree_["above"], "DxService");
    store_->updateObject(below);
    ASSERT_EQ(above.parentsInPlane(servicePlane).size(), 2U);

    EXPECT_EQ(above.registryPathsInPlane(servicePlane),
              QStringList{QStringLiteral("DxService:/Host/above")});
    EXPECT_EQ(below.entryPathsInPlane(servicePlane).size(), 1U);
    EXPECT_EQ(above.getNumRegistryPaths().paths, 1U);
    EXPECT_EQ(above.allAncestorsInPlane(servicePlane).size(), 4);
    EXPECT_EQ(above.allDescendantsInPlane(servicePlane).size(), 2);
}

#include "model/TavRegistryEntryPath.h"
#include "tests/support/RegistryTest.h"

#include <set>

namespace {
const QString power = QStringLiteral("DxPower");

std::set<QString> names(const EntrySet &entries)
{
    std::set<QString> names;
    for (const TavRegistryEntry *entry : entries)
        names.insert(entry->nameInPlane({}));
    return names;
}
} // namespace

class RegistryEntryLinksTest : public RegistryTest
{};

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

TEST_F(RegistryEntryLinksTest, AnEntryMayHaveSeveralParentsInSeveralPlanes)
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
    EXPECT_EQ(disk.parentsInPlane(power).size(), 2U);
    EXPECT_TRUE(disk.parentsInPlane(QStringLiteral("DxNone")).empty());
    EXPECT_EQ(names(disk.allAncestorsInPlane(power)),
              (std::set<QString>{QStringLiteral("Root"), QStringLiteral("Host"),
                                 QStringLiteral("fan"), QStringLiteral("rail")}));
    EXPECT_EQ(
        names(entry("Host").allDescendantsInPlane(power)),
        (std::set<QString>{QStringLiteral("disk"), QStringLiteral("fan"), QStringLiteral("rail")}));
    EXPECT_TRUE(disk.allDescendantsInPlane(power).isEmpty());

    EXPECT_EQ(entry("Host").childrenWithNameAtLocation(QStringLiteral("fan"), power),
              EntryList::Entries{&entry("fan")});
    EXPECT_TRUE(entry("Host").childrenWithNameAtLocation(QStringLiteral("FAN"), power).empty());
    EXPECT_TRUE(entry("Host").childrenWithNameAtLocation(QStringLiteral("disk"), power).empty());
}

TEST_F(RegistryEntryLinksTest, LinksFollowAMove)
{
    tree_.plane("DxService", R"(
        Root
          Host
            hub
              mouse
            port
    )");
    capture();
    service_.unlink(tree_["hub"], tree_["mouse"], "DxService");
    service_.link(tree_["port"], tree_["mouse"], "DxService");
    store_->update();
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            hub
            port
              mouse
    )"));
    EXPECT_EQ(entry("mouse").parentsInPlane(servicePlane), EntryList::Entries{&entry("port")});
    EXPECT_EQ(entry("mouse").registryState(), RegistryStateUnchanged);
}

// Entries that are re-read one by one may disagree about who is above whom.
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
    EXPECT_EQ(names(above.allAncestorsInPlane(servicePlane)).size(), 4U);
    EXPECT_EQ(names(above.allDescendantsInPlane(servicePlane)).size(), 2U);
}

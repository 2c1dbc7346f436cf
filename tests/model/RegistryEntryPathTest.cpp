// SPDX-License-Identifier: Apache-2.0
#include "model/RegistryOrder.h"
#include "model/TavRegistryEntryPath.h"
#include "tests/support/RegistryTest.h"

namespace {
const QString power = QStringLiteral("DxPower");

QStringList texts(const std::vector<TavRegistryEntryPath> &paths)
{
    QStringList texts;
    for (const TavRegistryEntryPath &path : paths)
        texts.append(path.registryPath());
    return texts;
}
} // namespace

class RegistryEntryPathTest : public RegistryTest
{
protected:
    RegistryEntryPathTest()
    {
        tree_.plane("DxService", R"(
            Root
              Host
                pci@2
                  disk@0
                    part
                fan
        )");
        tree_.plane("DxPower", R"(
            Root
              Host
                rail
                  disk@0
                fan
                  disk@0
                  rail
        )");
        tree_.plane("apart", R"(
            Root
              Host
        )");
        capture();
    }
    QStringList matches(const char *label, const char *path) const
    {
        QStringList names;
        for (const TavRegistryEntry *match : entry(label).entriesMatchingRelativeRegistryPath(
                 QString::fromUtf8(path), servicePlane))
            names.append(match->nameInPlane({}));
        return names;
    }
};

TEST_F(RegistryEntryPathTest, PathStringsNameEveryWayUpToTheRoot)
{
    EXPECT_EQ(entry("Root").registryPathsInPlane(servicePlane), list({"DxService:"}));
    EXPECT_EQ(entry("part").registryPathsInPlane(servicePlane),
              list({"DxService:/Host/pci@2/disk@0/part"}));
    EXPECT_EQ(entry("disk@0").registryPathsInPlane(power),
              list({"DxPower:/Host/fan/disk@0", "DxPower:/Host/rail/disk@0",
                    "DxPower:/Host/fan/rail/disk@0"}));
    EXPECT_TRUE(entry("part").registryPathsInPlane(power).isEmpty());
    EXPECT_TRUE(entry("Root").allRegistryPaths().isEmpty());
    EXPECT_EQ(entry("Host").allRegistryPaths(),
              list({"DxService:/Host", "apart:/Host", "DxPower:/Host"}));
    for (const EntryRef &entry : store_->registryEntries())
        EXPECT_EQ(entry->getNumRegistryPaths().paths,
                  static_cast<quint64>(entry->allRegistryPaths().size()));
    EXPECT_EQ(entry("disk@0").getNumRegistryPaths().paths, 4U);
    EXPECT_EQ(entry("disk@0").getNumRegistryPaths().planes, 2U);
    EXPECT_EQ(entry("Root").getNumRegistryPaths().planes, 0U);
}

TEST_F(RegistryEntryPathTest, EntryPathsLeaveTheRootsChildUnwritten)
{
    EXPECT_EQ(texts(entry("Root").entryPathsInPlane(servicePlane)), list({"(DxService)"}));
    EXPECT_EQ(texts(entry("Host").entryPathsInPlane(servicePlane)), list({"DxService:/"}));
    EXPECT_EQ(texts(entry("part").entryPathsInPlane(servicePlane)),
              list({"DxService:/pci@2/disk@0/part"}));
    EXPECT_TRUE(entry("part").entryPathsInPlane(power).empty());
    EXPECT_EQ(texts(entry("disk@0").allEntryPaths()),
              list({"DxService:/pci@2/disk@0", "DxPower:/fan/disk@0", "DxPower:/fan/rail/disk@0",
                    "DxPower:/rail/disk@0"}));
    EXPECT_EQ(entry("disk@0").entryPathInPlane(power, 2)->registryPath(),
              QStringLiteral("DxPower:/rail/disk@0"));
    EXPECT_FALSE(entry("disk@0").entryPathInPlane(power, 3));
    EXPECT_TRUE(TavRegistryEntryPath(power).registryPath().isNull());
}

TEST_F(RegistryEntryPathTest, PathsAreMadeComparedAndTakenApart)
{
    const auto ref = [this](const char *label) { return entry(label).shared_from_this(); };
    TavRegistryEntryPath path(servicePlane, {ref("Host")});
    path.prependRegistryEntry(ref("Root"));
    path.appendRegistryEntry(ref("fan"));
    EXPECT_TRUE(path.description().endsWith(QStringLiteral(" - DxService:/fan>")));
    EXPECT_TRUE(path.containsRegistryEntry(entry("Host")));
    EXPECT_EQ(TavRegistryEntryPath(power).lastRegistryEntry(), nullptr);
    EXPECT_EQ(path.subpathOfLength(9), path);

    const TavRegistryEntryPath prefix = path.subpathOfLength(2);
    EXPECT_FALSE(prefix == path);
    EXPECT_EQ(prefix.compareToEntryPath(path), -1);
    EXPECT_EQ(path.compareToEntryPath(prefix), 1);
    EXPECT_EQ(path.compareToEntryPath(path), 0);
    // The plane is compared before the entries.
    EXPECT_EQ(path.compareToEntryPath(TavRegistryEntryPath(QStringLiteral("apart"))), -1);
    const TavRegistryEntryPath other(servicePlane, {ref("Root"), ref("Host"), ref("pci@2")});
    EXPECT_EQ(path.compareToEntryPath(other), -1);
    EXPECT_FALSE(TavRegistryEntryPath(power, {ref("Root")}) ==
                 TavRegistryEntryPath(servicePlane, {ref("Root")}));
}

TEST_F(RegistryEntryPathTest, RelativePathsMatchExactlyFromTheirStart)
{
    EXPECT_EQ(matches("Host", "Host"), list({"Host"}));
    EXPECT_EQ(matches("Host", "Host/pci@2/disk@0"), list({"disk"}));
    for (const char *path : {"", "host", "pci@2", "Host/", "Host//pci@2", "Host/pci", "Host/pci@2/",
                             "/", "/Host", "//", "Host/pci@2/disk@0/part/more"})
        EXPECT_EQ(matches("Host", path), QStringList()) << path;

    service_.setName(tree_["Host"], "/", "DxService");
    store_->update();
    EXPECT_EQ(matches("Host", "/pci@2/disk@0"), list({"disk"}));
    EXPECT_EQ(matches("Host", "/fan"), list({"fan"}));
    for (const char *path : {"/", "//fan", "Host/fan", "fan"})
        EXPECT_EQ(matches("Host", path), QStringList()) << path;

    // All siblings with the name match.
    service_.link(tree_["Host"], service_.add(QStringLiteral("DxDevice"), "pci", "2"), "DxService");
    store_->update();
    EXPECT_EQ(matches("Host", "/pci@2"), list({"pci", "pci"}));
    EXPECT_EQ(matches("Host", "/pci@2/disk@0"), list({"disk"}));
}

TEST(RegistryOrder, PlanesAndPathsOfServicesComeFirst)
{
    const QString service = QStringLiteral("DxService");
    const QString block = QStringLiteral("dxblock");
    EXPECT_EQ(compareRegistryPlaneForUI(service, block), -1);
    EXPECT_EQ(compareRegistryPlaneForUI(block, service), 1);
    EXPECT_EQ(compareRegistryPlaneForUI(block, QStringLiteral("DXCLASS")), -1);
    EXPECT_EQ(compareRegistryPlaneForUI(block, QStringLiteral("DxBlock")), 0);
    EXPECT_EQ(compareRegistryPlaneForUI(QStringLiteral("DxServiceX"), block), 1);

    const QString servicePath = QStringLiteral("DxService:/z");
    const QString blockPath = QStringLiteral("DxBlock:/a");
    EXPECT_EQ(compareRegistryPathForUI(servicePath, blockPath), -1);
    EXPECT_EQ(compareRegistryPathForUI(blockPath, servicePath), 1);
    EXPECT_EQ(compareRegistryPathForUI(servicePath, QStringLiteral("DxService:/A")), 1);
}

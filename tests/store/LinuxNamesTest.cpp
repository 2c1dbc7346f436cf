// SPDX-License-Identifier: Apache-2.0
// Links and names, as in the kernel and as shown.
#include "LinuxFixture.h"
#include "tests/support/MadeTree.h"

#include <QTemporaryDir>
#include <filesystem>
#include <sys/stat.h>

namespace {
std::string inheritance(const CapturedTree &tree, const char *path)
{
    const TavRegistryEntry *entry = tree.at(path);
    return entry ? entry->inheritanceString().toStdString() : "no such entry";
}

TEST(SysfsRoot, RefusesOtherFolders)
{
    using Reason = SysfsRootError::Reason;
    const auto nowhere = LinuxRegistryService::create(QStringLiteral("/nowhere/at/all"));
    ASSERT_FALSE(nowhere);
    EXPECT_EQ(nowhere.error().reason, Reason::CannotOpen);
    EXPECT_TRUE(nowhere.error().message().contains(QStringLiteral("/nowhere/at/all")));
    const QTemporaryDir empty;
    const auto other = LinuxRegistryService::create(empty.path());
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error().reason, Reason::NotASysfsTree);
    EXPECT_TRUE(other.error().message().contains(QStringLiteral("no sysfs tree")));
}

TEST(SysfsRoot, ResolvesLinksByTheirTextOnly)
{
    EXPECT_EQ(SysfsRoot::resolveLink("class/net", "../../devices/virtual/net/lo"),
              "devices/virtual/net/lo");
    EXPECT_EQ(SysfsRoot::resolveLink("class/net", "./lo//x"), "class/net/lo/x");
    EXPECT_EQ(SysfsRoot::resolveLink("class/net", "../.."), "");
    EXPECT_TRUE(SysfsRoot::resolveLink("class/net", "../../../etc").isNull());
    EXPECT_TRUE(SysfsRoot::resolveLink("class/net", "/etc").isNull());
    EXPECT_TRUE(SysfsRoot::resolveLink("class/net", {}).isNull());
}

TEST(LinuxNames, RecordedTreeHasTheIdentityOfItsOwnMachine)
{
    MadeTree made;
    const auto identity = [&made] {
        const CapturedTree tree = CapturedTree::capture(made.sys() + u'/');
        return QStringLiteral("%1 (%2) %3")
            .arg(tree.store->hostName(), tree.store->archName(),
                 QString::number(tree.store->byteOrder()));
    };
    const QString folder = QDir(made.sys() + QStringLiteral("/..")).canonicalPath();
    EXPECT_EQ(identity(), QDir(folder).dirName() + QStringLiteral(" (<Unknown>) 0"));
    made.file("../proc/sys/kernel/arch", "x86_64\n");
    made.file("../etc/hostname", "lab/7\n# another line\n");
    EXPECT_EQ(identity(), QStringLiteral("lab!7 (x86_64) 1"));
    made.file("../proc/sys/kernel/arch", "aarch64\n");
    EXPECT_EQ(identity(), QStringLiteral("lab!7 (<Unknown>) 0"));
}

TEST(LinuxNames, DistinguishClassesBelowDifferentOnes)
{
    MadeTree made;
    for (const char *device : {"chip0", "chip1", "port0", "port1"})
        made.file(("devices/" + QByteArray(device) + "/uevent").constData(), "");
    for (const char *bus : {"gpio", "pci", "pnp"})
        made.folder(("bus/" + QByteArray(bus) + "/drivers/serial").constData());
    made.folder("class/gpio");
    made.link("devices/chip0/subsystem", "../../class/gpio");
    made.link("devices/chip1/subsystem", "../../bus/gpio");
    made.link("devices/port0/subsystem", "../../bus/pnp");
    made.link("devices/port0/driver", "../../bus/pnp/drivers/serial");
    made.link("devices/port1/subsystem", "../../bus/pci");
    made.link("devices/port1/driver", "../../bus/pci/drivers/serial");
    const CapturedTree tree = CapturedTree::capture(made.sys());
    EXPECT_EQ(inheritance(tree, "DxBus:/gpio/chip1"),
              "DxGpioDevice : DxBusDevice : DxDevice : DxService : DxRegistryEntry");
    EXPECT_EQ(inheritance(tree, "DxClass:/gpio/chip0"),
              "DxGpioDeviceClassDevice : DxClassDevice : DxDevice : DxService : DxRegistryEntry");
    EXPECT_EQ(inheritance(tree, "DxDriver:/pci/serial/serial@port1"),
              "DxSerialDriver : DxPciBinding : DxBinding : DxService : DxRegistryEntry");
    EXPECT_EQ(inheritance(tree, "DxDriver:/pnp/serial/serial@port0"),
              "DxSerialDriverPnpBinding : DxPnpBinding : DxBinding : DxService : DxRegistryEntry");
}

TEST(LinuxNames, AreTextAndUniqueWhateverTheKernelsAre)
{
    MadeTree made;
    made.folder("bus/usb");
    const QByteArray names[] = {"1-\xfe", "1-\xff", "1-" + QByteArray("\xc3\xa9").repeated(100)};
    for (const QByteArray &name : names) {
        const QByteArray device = made.path(("devices/" + name).constData());
        ASSERT_EQ(mkdir(device.constData(), 0700), 0);
        ASSERT_EQ(symlink("../../bus/usb", (device + "/subsystem").constData()), 0);
        ASSERT_EQ(mknod((device + "/uevent").constData(), S_IFREG | 0600, 0), 0);
    }
    const CapturedTree tree = CapturedTree::capture(made.sys());
    const auto &devices = tree.at("DxBus:/usb")->childrenInPlane(QStringLiteral("DxBus"));
    ASSERT_EQ(devices.size(), 3U);
    QSet<QString> shown;
    for (const TavRegistryEntry *device : devices)
        shown.insert(device->nameAtLocationInPlane(QStringLiteral("DxBus")));
    EXPECT_EQ(shown.size(), 3);
    std::filesystem::remove_all(made.path("devices").toStdString()); // such names Qt cannot remove
}
} // namespace

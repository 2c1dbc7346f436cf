// SPDX-License-Identifier: Apache-2.0
#include "LinuxFixture.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

namespace {
class SyntheticTree : public testing::Test
{
protected:
    static void SetUpTestSuite() { tree_ = CapturedTree::fixture("synthetic"); }
    static void TearDownTestSuite() { tree_ = {}; }
    static CapturedTree tree_;
};

CapturedTree SyntheticTree::tree_;

TEST_F(SyntheticTree, HasThePlanesWithMembers)
{
    EXPECT_EQ(tree_.store->registryPlanes().join(u' ').toStdString(),
              "DxService DxBlock DxBus DxClass DxDriver DxFirmware DxModule DxNetwork DxPower "
              "DxUsb");
}

TEST_F(SyntheticTree, HasItsRecordsWhateverItsFolderIsCalled)
{
    const auto hasRecord = [](const CapturedTree &tree) {
        const TavRegistryEntry *const disk = tree.at("DxBlock:/sda");
        return disk && disk->properties()->childWithName(QStringLiteral("udev"));
    };
    ASSERT_TRUE(hasRecord(tree_));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(
        QDir::setCurrent(QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/synthetic/sys")));
    for (const char *name : {".", "./", "../sys/", "devices/.."})
        EXPECT_TRUE(hasRecord(CapturedTree::capture(QString::fromLatin1(name)))) << name;
    QDir::setCurrent(before);
}

TEST_F(SyntheticTree, FindsEntriesByTheNamesThatLinuxGivesThem)
{
    const char *const port = "/sys/devices/pci0000:00/0000:00:1c.0/0000:01:00.0";
    const struct
    {
        const char *text;
        const char *path; // null: the port's
    } rows[] = {
        {"/sys/bus/pci", "DxBus:/pci"},
        {"/sys/bus/pci/", "DxBus:/pci"},
        {"/sys/bus/pci/drivers/lanport", "DxDriver:/pci/lanport"},
        {"/sys/module/lanport", "DxModule:/lanport"},
        {"/sys/class/block/sda", "DxBlock:/sda"},
        {"/sys/block/sda", "DxBlock:/sda"},
        {"/sys/block/sda/sda1/../size", "DxBlock:/sda"},
        {"/sys/dev/block/8:0", "DxBlock:/sda"},
        {"/dev/sda", "DxBlock:/sda"},
        {"/dev/disk/by-id/ata-SPINNER_4T_000123", "DxBlock:/sda"},
        {" sda ", "DxBlock:/sda"},
        {"/sys/devices/pci0000:00/0000:00:1c.0/0000:01:00.0/driver/module", "DxModule:/lanport"},
        {"/sys/bus/pci/devices/0000:01:00.0", nullptr},
        {"/sys/bus/pci/drivers/lanport/0000:01:00.0/vendor", nullptr},
        {"0000:01:00.0", nullptr},
        {"01:00.0", nullptr},
    };
    const EntryLocator &locator = tree_.store->locator();
    const auto find = [&locator](const char *text) {
        return locator.find(QString::fromUtf8(text));
    };
    const auto offers = [&locator](const char *text, const char *candidate) {
        return locator.candidates(QString::fromUtf8(text)).contains(QString::fromUtf8(candidate));
    };
    TavRegistryEntry *const portEntry = locator.atKernelPath(QString::fromUtf8(port));
    ASSERT_TRUE(portEntry);
    for (const auto &row : rows)
        EXPECT_EQ(find(row.text), std::vector{row.path ? tree_.at(row.path) : portEntry})
            << row.text;
    // Attributes that have not been read are found, too.
    TreeReader::Options options;
    options.detail = ReadingDetail::Structure;
    for (const auto &row : rows) {
        const CapturedTree partial = CapturedTree::capture(
            QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/synthetic/sys"), options);
        const auto found = partial.store->findReadingWhole(QString::fromUtf8(row.text));
        ASSERT_EQ(found.size(), 1U) << row.text;
        EXPECT_EQ(found.front()->entryTag(), find(row.text).front()->entryTag()) << row.text;
    }
    EXPECT_EQ(find(qPrintable(QString::number(portEntry->entryTag()))), std::vector{portEntry});
    EXPECT_EQ(find(qPrintable(QStringLiteral("0x%1").arg(portEntry->entryTag(), 0, 16))),
              std::vector{portEntry});
    EXPECT_GE(find("usbhid").size(), 2U); // a driver and its module
    for (const char *nothing : {"", "/", "/sys", "/sys/bus/pci/nothing", "/sys/block/sda/sda1/x",
                                "/sys/../../etc", "/dev/", "nothing", "pci:nothing", "0x"})
        EXPECT_TRUE(find(nothing).empty()) << nothing;
    EXPECT_EQ(locator.atLink(QStringLiteral("bus/pci/drivers/lanport")),
              tree_.at("DxDriver:/pci/lanport"));
    EXPECT_EQ(locator.atLink(QStringLiteral("lanport")), nullptr);
    EXPECT_TRUE(offers("/dev/sd", "/dev/sda"));
    EXPECT_TRUE(offers("/sys/bus/pci/drivers/lan", "/sys/bus/pci/drivers/lanport"));
    EXPECT_TRUE(offers("0000:01", "0000:01:00.0"));
    EXPECT_TRUE(offers("acpi:LNXPO", "acpi:LNXPOWER:"));
    EXPECT_TRUE(offers(qPrintable(QString::number(portEntry->entryTag()).chopped(1)),
                       qPrintable(QString::number(portEntry->entryTag()))));
}

TEST_F(SyntheticTree, ArrangesItsPlanes)
{
    // On the first reading siblings are sorted by their plain names: names in planes are read
    // later.
    tree_.store->update();
    const std::pair<const char *, const char *> planes[] = {
        {"DxBlock", R"(
        Root
          Synthetic One
            array!c0d0
              array!c0d0p1
            sda
              sda1
                md0
                  dm-0
                  dm-1
              sda2
                dm-1
            sdb
              sdb1
                md0
                  dm-0
                  dm-1
    )"},
        {"DxModule", R"(
        Root
          Synthetic One
            bonding
            going_away
            hid
              hid_generic
                hid-generic
              usbhid
                usbhid
            lanport
              lanport
            scsi_mod
              sd
            serial_core
              uart
            usbcore
              hub
              usb
              usbhid
                usbhid
              xhci_hcd
                xhci_pci
                  xhci_hcd
    )"},
        {"DxPower", R"(
        Root
          Synthetic One
            clock@7e101000
              serial@7e201000
            LNXPOWER@00
              usb@0000:00:14.0
                Root Hub@usb1
                  usb05e3,0610@1-4
            pump-a
              pump-b
            regulator@0
              serial@7e201000
    )"},
        {"DxFirmware", R"(
        Root
          Synthetic One
            cpus
              cpu@0
            LNXSYSTM@00
              _SB_@LNXSYBUS:00
                PCI0@PNP0A08:00
                  pci0000:00
                  PWRU@LNXPOWER:00
                  XHC_@device:00
                    usb@0000:00:14.0
            soc
              clock@7e101000
                clock@7e101000
              serial@7e201000
                serial@7e201000
              soc
    )"},
        {"DxUsb", R"(
        Root
          Synthetic One
            Root Hub@usb1
              interface@1.0
              usb05e3,0610@1-4
                interface@1.0
                Keys!Dials Pro@1-4.2
                  interface@1.1
                  Keyboard@1.0
    )"},
        {"DxNetwork", R"(
        Root
          Synthetic One
            eth0
              bond0
                bond0.7
            eth1
              bond0
                bond0.7
            lo
    )"},
    };
    for (const auto &[plane, text] : planes)
        EXPECT_EQ(TreePrinter::plane(*tree_.store, QString::fromLatin1(plane)), dedented(text))
            << plane;
    const TavRegistryEntry *refusing = tree_.at("DxPower:/pump-a");
    ASSERT_TRUE(refusing);
    const auto *refused = refusing->properties()->childWithName(QStringLiteral("DxRefusedParents"));
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->childAtIndex(0)->value().toString().toStdString(),
              "DxPower: devices/platform/pump-b");
}

TEST_F(SyntheticTree, NamesClassesAndBundles)
{
    struct Row
    {
        const char *path;
        const char *inheritance;
        const char *bundle;
    };
    const Row rows[] = {
        {"DxUsb:/Root Hub@usb1",
         "DxUsbDevice : DxBusDevice : DxDevice : DxService : DxRegistryEntry", "usbcore"},
        {"DxUsb:/Root Hub@usb1/usb05e3,0610@1-4/Keys!Dials Pro@1-4.2/Keyboard@1.0",
         "DxUsbInterfaceUsbhid : DxUsbInterface : DxUsbDevice : DxBusDevice : DxDevice : DxService "
         ": DxRegistryEntry",
         "usbhid"},
        {"DxDriver:/pci/xhci_hcd/xhci_hcd@0000:00:14.0",
         "DxXhciHcdDriver : DxPciBinding : DxBinding : DxService : DxRegistryEntry", "xhci_pci"},
        {"DxDriver:/scsi/sd/sd@0:0:0:0",
         "DxSdDriver : DxScsiBinding : DxBinding : DxService : DxRegistryEntry",
         "org.linux.kernel"},
        {"DxService:/pci0000:00/smbus@0000:00:1f.3",
         "DxPciSerialBus : DxPciDevice : DxBusDevice : DxDevice : DxService : DxRegistryEntry",
         "org.linux.kernel"},
        {"DxService:/virtual/block", "DxContainer : DxService : DxRegistryEntry",
         "org.linux.kernel"},
        {"DxModule:/usbcore", "DxModule : DxRegistryEntry", "org.linux.kernel"},
    };
    for (const Row &row : rows) {
        const TavRegistryEntry *entry = tree_.at(row.path);
        ASSERT_TRUE(entry) << row.path;
        EXPECT_EQ(entry->inheritanceString().toStdString(), row.inheritance);
        EXPECT_EQ(entry->bundleID().toStdString(), row.bundle) << row.path;
    }
}

TEST_F(SyntheticTree, CountsBusyChildrenUpToTheHost)
{
    const TavRegistryEntry *host = tree_.at("DxService:/");
    const TavRegistryEntry *platform = tree_.at("DxService:/platform");
    ASSERT_TRUE(host && platform);
    EXPECT_EQ(host->busyCount(), 1U); // one child with something pending below
    EXPECT_EQ(platform->busyCount(), 2U);
}

TEST_F(SyntheticTree, ReadsSomeAttributesOnRequestOnlyAndKeepsThem)
{
    const CapturedTree tree = CapturedTree::fixture("synthetic");
    TavRegistryEntry *const usb = tree.at("DxService:/pci0000:00/usb@0000:00:14.0");
    ASSERT_TRUE(usb);
    EXPECT_TRUE(CapturedTree::value(usb, u"config").isNone());
    EXPECT_TRUE(CapturedTree::value(usb, u"resource").isNone());
    tree.store->updateObject(*usb);
    EXPECT_EQ(CapturedTree::value(usb, u"config").toData().size(), 16);
    const auto *const dates = usb->properties()->childWithName(QStringLiteral("DxReadOnRequest"));
    EXPECT_TRUE(dates && dates->childWithName(QStringLiteral("config")));
    EXPECT_TRUE(CapturedTree::value(usb, u"resource").isNone());
    tree.store->update();
    EXPECT_EQ(CapturedTree::value(usb, u"config").toData().size(), 16);
    EXPECT_EQ(CapturedTree::value(usb, u"vendor").numberBits(), 0x1af4U);

    const TavRegistryEntry *control = tree.at("DxClass:/zram-control");
    ASSERT_TRUE(control);
    EXPECT_EQ(control->properties()->numberOfChildren(), 1); // hot_add would create a device
    EXPECT_TRUE(control->properties()->childWithName(QStringLiteral("DxUnreadAttributes")));
}
} // namespace

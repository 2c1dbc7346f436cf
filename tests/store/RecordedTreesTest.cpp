#include "tests/support/RecordedTrees.h"
#include "LinuxFixture.h"
#include "store/DataStoreDecoder.h"
#include "tests/support/EncodedStore.h"
#include "tests/support/StorePrinter.h"

namespace {
// What holds in every plane of every registry. Gives the entries that the plane has.
EntrySet checkPlane(const TavDataStore &store, const QString &plane)
{
    TavRegistryEntry *const root = store.registryRoot();
    EXPECT_EQ(root->childrenInPlane(plane).size(), 1U);
    EntrySet members = root->allDescendantsInPlane(plane);
    members.insert(root);
    // Taking away who has no parent left, until nobody is left: there is no cycle.
    QHash<const TavRegistryEntry *, std::size_t> parentsLeft;
    std::vector<TavRegistryEntry *> free{root};
    qsizetype freed = 0;
    while (!free.empty()) {
        TavRegistryEntry *const entry = free.back();
        free.pop_back();
        ++freed;
        QSet<QString> names;
        for (TavRegistryEntry *child : entry->childrenInPlane(plane)) {
            names.insert(child->nameAtLocationInPlane(plane));
            const auto &parents = child->parentsInPlane(plane);
            EXPECT_EQ(std::count(parents.begin(), parents.end(), entry), 1);
            if (!parentsLeft.contains(child))
                parentsLeft.insert(child, parents.size());
            if (--parentsLeft[child] == 0)
                free.push_back(child);
        }
        EXPECT_EQ(static_cast<std::size_t>(names.size()), entry->childrenInPlane(plane).size())
            << "siblings named alike under " << entry->nameAtLocationInPlane(plane).toStdString()
            << " in " << plane.toStdString();
    }
    EXPECT_EQ(freed, members.size()) << "a cycle in " << plane.toStdString();
    for (TavRegistryEntry *member : members) {
        for (TavRegistryEntry *parent : member->parentsInPlane(plane)) {
            const auto &children = parent->childrenInPlane(plane);
            EXPECT_EQ(std::count(children.begin(), children.end(), member), 1);
        }
    }
    return members;
}

void checkStore(const TavDataStore &store)
{
    EntrySet reached;
    for (const QString &plane : store.registryPlanes())
        reached.unite(checkPlane(store, plane));
    EXPECT_EQ(static_cast<std::size_t>(reached.size()), store.registryEntries().size());
    for (const EntryRef &entry : store.registryEntries()) {
        EXPECT_TRUE(reached.contains(entry.get()));
        ASSERT_TRUE(entry->properties()) << entry->nameInPlane({}).toStdString();
        EXPECT_EQ(entry->properties()->registryEntry(), entry);
        for (TavRegistryProperty *child : entry->properties()->children())
            EXPECT_EQ(child->parent(), entry->properties());
    }
}

// A failure shows the first line that differs, not both machines.
void expectSameText(const std::string &text, const std::string &expected)
{
    const auto [a, b] = std::mismatch(text.begin(), text.end(), expected.begin(), expected.end());
    const auto line = std::count(text.begin(), a, '\n');
    const auto lineOf = [line](const std::string &whole) {
        return QString::fromStdString(whole).section(u'\n', line, line).toStdString();
    };
    EXPECT_TRUE(text == expected) << "line " << line << ": " << lineOf(text) << "\ninstead of "
                                  << lineOf(expected);
}

// That what was captured is a registry, and the same one when it is written and read back.
void check(const CapturedTree &tree)
{
    ASSERT_TRUE(tree.store);
    EXPECT_GT(tree.store->registryEntries().size(), 1U);
    checkStore(*tree.store);
    const auto read = DataStoreDecoder::decode(encoded(*tree.store));
    ASSERT_TRUE(read);
    checkStore(*read);
    EXPECT_FALSE(read->isLive());
    expectSameText(StorePrinter::print(*read), StorePrinter::print(*tree.store));
    // The time of reading is not read back; all else is written the same.
    const QByteArray again = encoded(*read);
    EXPECT_TRUE(encoded(*DataStoreDecoder::decode(again)) == again);
}

struct Known
{
    const char *tree;
    const char *path;
    const char *className;
    const char *driver; // bound to it; null: none
    const char *bundle;
    const char *values; // some of its properties, as text
};

std::ostream &operator<<(std::ostream &stream, const Known &known)
{
    return stream << known.tree;
}

std::string asText(const RegistryValue &value)
{
    return value.type() == RegistryValue::Type::Number
               ? std::to_string(value.numberBits()) + ':' + std::to_string(value.numberWidth())
               : value.toString().toStdString();
}

class RecordedTree : public testing::TestWithParam<Known>
{};

TEST_P(RecordedTree, IsARegistryWithItsKnownDevice)
{
    const Known &known = GetParam();
    const QString folder = RecordedTrees::folder(QString::fromLatin1(known.tree));
    if (folder.isNull())
        GTEST_SKIP() << RecordedTrees::missingMessage().toStdString();
    const CapturedTree tree = CapturedTree::capture(folder + QStringLiteral("/sys"));
    check(tree);

    const TavRegistryEntry *entry = tree.at(known.path);
    ASSERT_TRUE(entry) << known.path;
    EXPECT_EQ(entry->DxcoreClass().toStdString(), known.className);
    EXPECT_EQ(entry->bundleID().toStdString(), known.bundle);
    for (const QString &property : QString::fromLatin1(known.values).split(u' ')) {
        const QString key = property.section(u'=', 0, 0);
        EXPECT_EQ(asText(CapturedTree::value(entry, key)), property.section(u'=', 1).toStdString())
            << key.toStdString();
    }
    const auto &children = entry->childrenInPlane(QStringLiteral("DxService"));
    const auto binding = std::find_if(children.begin(), children.end(), [](const auto *child) {
        return child->isKindOfDxcoreClass(QStringLiteral("DxBinding"), false);
    });
    if (!known.driver) {
        EXPECT_EQ(binding, children.end());
        return;
    }
    ASSERT_NE(binding, children.end());
    EXPECT_EQ((*binding)->nameInPlane({}).toStdString(), known.driver);
    EXPECT_TRUE(entry->isMatched());
}

const Known knownDevices[] = {
    {"d1-laptop-t60p", "DxService:/pci0000:00/pci-bridge@0000:00:1c.0/ethernet@0000:02:00.0",
     "DxPciNetwork", "e1000e", "e1000e", "vendor=32902:2 device=4250:2 class=131072:4 irq=505:4"},
    {"d2-server-nvme-pmem-mic", "DxService:/pci0000:00/nvme@0000:00:02.0/nvme0n1", "DxBlockDisk",
     nullptr, "org.linux.kernel", "dev=259:0 size=781422768:4 removable=0:4"},
    {"d3-server-4socket-144cpu", "DxService:/system/cpu/cpu143", "DxCpuDevice", "processor",
     "org.linux.kernel", "crash_notes_size=368:4 crash_notes=bf7faf5600 online=1:4"},
    {"d4-laptop-elitebook-usb4", "DxBlock:/nvme0n1", "DxBlockDisk", nullptr, "org.linux.kernel",
     "dev=259:0 subsystem=class/block"},
    {"d5-arm-rpi4b-devicetree", "DxService:/platform/scb/ethernet@fd580000", "DxPlatformDevice",
     "bcmgenet", "org.linux.kernel", "subsystem=bus/platform driver=bus/platform/drivers/bcmgenet"},
    {"d6-block-lvm", "DxBlock:/loop0/dm-0", "DxBlockDevice", nullptr, "org.linux.kernel",
     "dev=253:0 ro=0:4 ext_range=1:4 capability=10:4"},
    {"d7-usb-hub-keyboard",
     "DxService:/pci0000:00/usb@0000:00:1a.0/EHCI Host Controller@usb1/usb8087,0020@1-1/"
     "usb17ef,1005@1-1.5/Kinesis Keyboard Hub@1-1.5.4/usb05f3,0007@1-1.5.4.2/interface@1.0",
     "DxUsbInterface", "usbhid", "org.linux.kernel",
     "bInterfaceClass=03 bNumEndpoints=01 bInterfaceProtocol=01"},
    {"d8-arm-128cpu", "DxService:/system/cpu127", "DxCpuDevice", "processor", "org.linux.kernel",
     "online=1:4 cpu_capacity=1024:4"},
};

INSTANTIATE_TEST_SUITE_P(Machines, RecordedTree, testing::ValuesIn(knownDevices),
                         [](const auto &row) {
                             std::string name(row.param.tree);
                             std::erase_if(name, [](char c) { return !std::isalnum(c); });
                             return name;
                         });

TEST(Fixtures, AreRegistries)
{
    check(CapturedTree::fixture("synthetic"));
    check(CapturedTree::fixture("virtio-vm"));
}

TEST(LiveHost, IsARegistry)
{
    check(CapturedTree::capture(QStringLiteral("/sys")));
}
} // namespace

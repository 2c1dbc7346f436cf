// SPDX-License-Identifier: Apache-2.0
#include "LinuxFixture.h"
#include "store/DataStoreDecoder.h"
#include "tests/support/EncodedStore.h"
#include "tests/support/StoreLinks.h"
#include "tests/support/StorePrinter.h"
#include "tests/support/TreeText.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace {
// What is true for every registry.
void checkStore(const TavDataStore &store)
{
    expectLinksAgree(store);
    EntrySet reached{store.registryRoot()};
    for (const QString &plane : store.registryPlanes()) {
        EXPECT_EQ(store.registryRoot()->childrenInPlane(plane).size(), 1U);
        reached.unite(store.registryRoot()->allDescendantsInPlane(plane));
        for (const EntryRef &entry : store.registryEntries()) {
            QSet<QString> names;
            for (const TavRegistryEntry *child : entry->childrenInPlane(plane))
                names.insert(child->nameAtLocationInPlane(plane));
            EXPECT_EQ(static_cast<std::size_t>(names.size()), entry->childrenInPlane(plane).size())
                << "siblings named alike under "
                << entry->nameAtLocationInPlane(plane).toStdString() << " in "
                << plane.toStdString();
        }
    }
    EXPECT_EQ(static_cast<std::size_t>(reached.size()), store.registryEntries().size());
    for (const EntryRef &entry : store.registryEntries()) {
        ASSERT_TRUE(entry->properties()) << entry->nameInPlane({}).toStdString();
        EXPECT_EQ(entry->properties()->registryEntry(), entry);
        for (TavRegistryProperty *child : entry->properties()->children())
            EXPECT_EQ(child->parent(), entry->properties());
    }
}

// The captured store is a registry, and the same after writing and reading it.
void check(const CapturedTree &tree)
{
    ASSERT_TRUE(tree.store);
    EXPECT_GT(tree.store->registryEntries().size(), 1U);
    checkStore(*tree.store);
    const auto read = DataStoreDecoder::decode(encoded(*tree.store));
    ASSERT_TRUE(read) << "it may have a cycle";
    checkStore(*read);
    EXPECT_FALSE(read->isLive());
    const std::string text = StorePrinter::print(*read);
    const std::string expected = StorePrinter::print(*tree.store);
    EXPECT_TRUE(text == expected) << firstDifference(text, expected);
    // The time of reading is not restored; everything else is written the same.
    const QByteArray again = encoded(*read);
    EXPECT_TRUE(encoded(*DataStoreDecoder::decode(again)) == again);
}

// A reading of the structure differs in properties only, until they are read, too.
void checkStructure(const QString &sysfs, bool isStill = true)
{
    TreeReader::Options options;
    options.recordsFiles = true;
    const CapturedTree whole = CapturedTree::capture(sysfs, options);
    options.detail = ReadingDetail::Structure;
    const CapturedTree tree = CapturedTree::capture(sysfs, options);
    const std::string text = StorePrinter::structure(*tree.store);
    const std::string expected = StorePrinter::structure(*whole.store);
    EXPECT_TRUE(text == expected) << firstDifference(text, expected);
    EXPECT_LT(tree.service->filesRead().size(), whole.service->filesRead().size());
    if (!isStill)
        return;
    std::vector<TavRegistryEntry *> entries;
    for (const EntryRef &entry : tree.store->registryEntries())
        entries.push_back(entry.get());
    tree.store->readWhole(entries);
    const std::string read = StorePrinter::registry(*tree.store);
    const std::string all = StorePrinter::registry(*whole.store);
    EXPECT_TRUE(read == all) << firstDifference(read, all);
}

// Trees recorded on other machines are not part of the project: their archives NAME.tar.xz are
// looked for here.
QString archiveFolder()
{
    const QString given = qEnvironmentVariable("VANDREL_SYSFS_TREES");
    return given.isEmpty() ? QStringLiteral(VANDREL_SOURCE_DIR "/../shared/sysfs") : given;
}

// The folder with the tree's "sys", unpacked on first use and kept in the build folder; null if the
// archive is missing or cannot be unpacked.
QString unpacked(const QString &name)
{
    const QFileInfo archive(archiveFolder() + u'/' + name + QLatin1String(".tar.xz"));
    if (!archive.isFile())
        return {};
    const QDir cache(QStringLiteral(VANDREL_BINARY_DIR "/recorded-trees"));
    const QString tree =
        cache.filePath(name + u'-' + QString::number(archive.lastModified().toSecsSinceEpoch()));
    if (QFileInfo::exists(tree))
        return tree;
    // Tests run in parallel: each unpacks separately, and the first to finish installs the folder.
    cache.mkpath(QStringLiteral("."));
    const QTemporaryDir work(cache.filePath(QStringLiteral("XXXXXX")));
    const QString own = work.filePath(name);
    QDir().mkpath(own);
    if (QProcess::execute(QStringLiteral("tar"), {QStringLiteral("-xJf"), archive.filePath(),
                                                  QStringLiteral("-C"), own}) == 0)
        QDir().rename(own, tree);
    return QFileInfo::exists(tree) ? tree : QString();
}

// A tree and one of its devices.
struct Recorded
{
    const char *name;
    const char *path;
};

class RecordedTree : public testing::TestWithParam<Recorded>
{};

TEST_P(RecordedTree, IsARegistryWithItsKnownDevice)
{
    const QString folder = unpacked(QString::fromLatin1(GetParam().name));
    if (folder.isNull())
        GTEST_SKIP() << "no recorded tree in " << archiveFolder().toStdString()
                     << " (VANDREL_SYSFS_TREES names another folder)";
    const CapturedTree tree = CapturedTree::capture(folder + QStringLiteral("/sys"));
    check(tree);
    EXPECT_TRUE(tree.at(GetParam().path));
    checkStructure(folder + QStringLiteral("/sys"));
}

const Recorded recordedTrees[] = {
    {"d1-laptop-t60p", "DxService:/pci0000:00/pci-bridge@0000:00:1c.0/ethernet@0000:02:00.0"},
    {"d2-server-nvme-pmem-mic", "DxService:/pci0000:00/nvme@0000:00:02.0/nvme0n1"},
    {"d3-server-4socket-144cpu", "DxService:/system/cpu/cpu143"},
    {"d4-laptop-elitebook-usb4", "DxBlock:/nvme0n1"},
    {"d5-arm-rpi4b-devicetree", "DxService:/platform/scb/ethernet@fd580000"},
    {"d6-block-lvm", "DxBlock:/loop0/dm-0"},
    {"d7-usb-hub-keyboard",
     "DxService:/pci0000:00/usb@0000:00:1a.0/EHCI Host Controller@usb1/usb8087,0020@1-1/"
     "usb17ef,1005@1-1.5/Kinesis Keyboard Hub@1-1.5.4/usb05f3,0007@1-1.5.4.2/interface@1.0"},
    {"d8-arm-128cpu", "DxService:/system/cpu127"},
};

INSTANTIATE_TEST_SUITE_P(Machines, RecordedTree, testing::ValuesIn(recordedTrees),
                         [](const auto &row) {
                             std::string name(row.param.name);
                             std::erase_if(name, [](char c) { return !std::isalnum(c); });
                             return name;
                         });

TEST(Fixtures, AreRegistries)
{
    check(CapturedTree::fixture("synthetic"));
    check(CapturedTree::fixture("virtio-vm"));
    for (const char *const name : {"synthetic", "virtio-vm"})
        checkStructure(QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/%1/sys")
                           .arg(QString::fromLatin1(name)));
}

TEST(LiveHost, IsARegistry)
{
    check(CapturedTree::capture(QStringLiteral("/sys")));
    checkStructure(QStringLiteral("/sys"), false);
}
} // namespace

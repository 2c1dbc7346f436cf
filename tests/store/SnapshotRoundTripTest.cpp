#include "LinuxFixture.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"
#include "tests/support/RecordedTrees.h"
#include "tests/support/StorePrinter.h"

#include <QBuffer>

namespace {
// A failure that shows the first line that differs, not both machines.
void expectSameText(const std::string &text, const std::string &expected)
{
    if (text == expected)
        return;
    const auto [a, b] = std::mismatch(text.begin(), text.end(), expected.begin(), expected.end());
    const auto line = static_cast<std::size_t>(std::count(text.begin(), a, '\n'));
    const auto lineOf = [line](const std::string &whole) {
        return QString::fromStdString(whole).section(u'\n', static_cast<qsizetype>(line),
                                                     static_cast<qsizetype>(line));
    };
    ADD_FAILURE() << "line " << line << ": " << qPrintable(lineOf(text)) << "\ninstead of "
                  << qPrintable(lineOf(expected));
}

// Parents, children and properties are the very objects of the table and of the tree.
void expectShared(const TavDataStore &store)
{
    EntrySet table;
    for (const EntryRef &entry : store.registryEntries())
        table.insert(entry.get());
    for (const EntryRef &entry : store.registryEntries()) {
        for (const QString &plane : store.registryPlanes()) {
            for (TavRegistryEntry *child : entry->childrenInPlane(plane)) {
                ASSERT_TRUE(table.contains(child));
                const auto &parents = child->parentsInPlane(plane);
                ASSERT_EQ(std::count(parents.begin(), parents.end(), entry.get()), 1);
            }
        }
        ASSERT_EQ(entry->properties()->registryEntry(), entry);
        for (TavRegistryProperty *child : entry->properties()->children())
            ASSERT_EQ(child->parent(), entry->properties());
    }
}

void expectRoundTrip(const QString &sysfs)
{
    const CapturedTree tree = CapturedTree::capture(sysfs);
    ASSERT_TRUE(tree.store);
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    ASSERT_TRUE(DataStoreEncoder::encode(*tree.store, device).isNull());
    const auto read = DataStoreDecoder::decode(device.data());
    ASSERT_TRUE(read);
    EXPECT_GT(read->registryEntries().size(), 1U);
    expectSameText(StorePrinter::print(*read), StorePrinter::print(*tree.store));
    expectShared(*read);
}

class RecordedSnapshot : public testing::TestWithParam<const char *>
{};

TEST_P(RecordedSnapshot, RoundTrips)
{
    const QString folder = RecordedTrees::folder(QString::fromLatin1(GetParam()));
    if (folder.isNull())
        GTEST_SKIP() << RecordedTrees::missingMessage().toStdString();
    expectRoundTrip(folder + QStringLiteral("/sys"));
}

INSTANTIATE_TEST_SUITE_P(Machines, RecordedSnapshot,
                         testing::Values("d1-laptop-t60p", "d2-server-nvme-pmem-mic",
                                         "d3-server-4socket-144cpu", "d4-laptop-elitebook-usb4",
                                         "d5-arm-rpi4b-devicetree", "d6-block-lvm",
                                         "d7-usb-hub-keyboard", "d8-arm-128cpu"),
                         [](const auto &row) {
                             std::string name(row.param);
                             std::erase_if(name, [](char c) { return !std::isalnum(c); });
                             return name;
                         });

TEST(FixtureSnapshot, RoundTrips)
{
    for (const char *name : {"synthetic", "virtio-vm"})
        expectRoundTrip(QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/%1/sys")
                            .arg(QString::fromLatin1(name)));
}

TEST(LiveHost, SnapshotRoundTrips)
{
    expectRoundTrip(QStringLiteral("/sys"));
}
} // namespace

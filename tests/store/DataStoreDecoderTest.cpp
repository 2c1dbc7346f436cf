// SPDX-License-Identifier: Apache-2.0
#include "store/DataStoreDecoder.h"
#include "store/FileVersionExceptions.h"
#include "tests/support/SmallStore.h"
#include "tests/support/StorePrinter.h"
#include "tests/support/TreePrinter.h"

#include <ctime>
#include <gtest/gtest.h>

using L1 = QLatin1String;
using Sketch = ArchiveSketch;
using enum SmallStore::Position;

TEST(DataStoreDecoder, ReadsAnArchiveOfAnotherProgram)
{
    Sketch sketch = SmallStore::current();
    sketch.objects[RootTable].set(L1("dateRead"), QDateTime::currentDateTimeUtc());
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store);
    EXPECT_EQ(TreePrinter::plane(*store, QStringLiteral("DxService")), "Root\n  Child\n");
    EXPECT_EQ(TreePrinter::properties(*store->registryRoot()->properties()),
              "dictionary\n"
              "  text: \"value\"\n"
              "  list: array\n"
              "    0: 7 (4 bytes)\n");
    EXPECT_TRUE(store->registryRoot()->properties()->dateRead().isNull());
    EXPECT_EQ(store->byteOrder(), EntryStore::LittleEndian);

    for (Sketch::Object &object : sketch.objects) {
        object.set(L1("number of a later version"), -1)
            .set(L1("table of a later version"),
                 SmallStore::inPlane(ArchiveList{SmallStore::at(Store), true}));
        std::reverse(object.keys.begin(), object.keys.end());
    }
    const auto reversed = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(reversed);
    EXPECT_EQ(StorePrinter::print(*reversed), StorePrinter::print(*store));
}

TEST(DataStoreDecoder, TakesAbsentValuesWhereTheyAreOptional)
{
    Sketch sketch = SmallStore::current();
    for (const L1 key :
         {L1("dateDiscovered"), L1("bundleID"), L1("inheritance"), L1("name"), L1("namesInPlanes"),
          L1("location"), L1("locationsInPlanes"), L1("childrenInPlanes"), L1("parentsInPlanes"),
          L1("busyCount"), L1("isActive"), L1("registryState"),
          L1("TavRegistryEntryCoderVersionNumber")})
        sketch.objects[Root].remove(key);
    for (const L1 key : {L1("hostName"), L1("archName"), L1("byteOrder"), L1("lastUpdateDate")})
        sketch.objects[Store].remove(key);
    sketch.objects[Text].remove(L1("name")).remove(L1("parent"));
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store);
    EXPECT_EQ(store->registryEntries().size(), 2U);
    EXPECT_FALSE(store->registryRoot()->isActive());
    EXPECT_EQ(store->byteOrder(), 0);
    sketch.objects[Store].set(L1("byteOrder"), QStringLiteral("little"));
    const auto odd = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(odd) << "what is no number counts as none";
    EXPECT_EQ(odd->byteOrder(), 0);
    TavRegistryProperty *const properties = store->registryRoot()->properties();
    EXPECT_EQ(properties->childAtIndex(0)->parent(), properties) << "as the list of children says";
}

TEST(DataStoreDecoder, ThrowsForOtherVersions)
{
    Sketch sketch = SmallStore::current();
    auto &store = sketch.objects[Store];
    const QString old = QStringLiteral(
        "The file is stored in an old version that this version of the application cannot open.");
    const QString newer = QStringLiteral(
        "The file is stored in an newer version that this version of the application cannot open.");
    const auto reasonOf = [](const QByteArray &bytes) -> QString {
        try {
            DataStoreDecoder::decode(bytes);
        } catch (const TavOldUnsupportedFileVersionException &exception) {
            return exception.reason();
        } catch (const TavNewUnsupportedFileVersionException &exception) {
            return exception.reason();
        }
        return {};
    };
    const std::pair<qint64, QString> versions[] = {
        {0, old}, {1, {}}, {2, {}}, {3, newer}, {std::numeric_limits<qint64>::max(), newer}};
    for (const auto &[version, reason] : versions) {
        store.set(L1("dataStoreVersion"), version);
        EXPECT_EQ(reasonOf(sketch.bytes()), reason) << version;
    }
    store.remove(L1("dataStoreVersion"));
    EXPECT_EQ(reasonOf(sketch.bytes()), old);

    // A later version may have any content after its version.
    const QByteArray head = QByteArray("\xd9\xd9\xf7\x9f\x6f") + "vandrel-archive";
    EXPECT_EQ(reasonOf(head + '\x02'), newer);
    EXPECT_EQ(reasonOf(head + "\x18\xff\xf6"), newer);
    EXPECT_EQ(reasonOf(head + '\x00'), QString()) << "there was no earlier version";
    EXPECT_EQ(reasonOf(head + "\x61\x32"), QString());
}

TEST(DataStoreDecoder, ReadsVersionOne)
{
    Sketch sketch = SmallStore::old();
    sketch.objects[Root]
        .set(L1("properties"), ArchiveValue(QByteArray("<plist version=\"1.0\"><dict>"
                                                       "<key>a</key><integer>1</integer>"
                                                       "<key>b</key><array><true/></array>"
                                                       "</dict></plist>")))
        .set(L1("isNew"), ArchiveValue(true));
    sketch.objects[Child]
        .set(L1("isNew"), ArchiveValue(true))
        .set(L1("terminationAcknowledged"), ArchiveValue(true));
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store);
    const TavRegistryEntry &root = *store->registryEntries().at(0);
    const TavRegistryEntry &child = *store->registryEntries().at(1);
    EXPECT_EQ(root.dataStore(), store.get());
    EXPECT_EQ(root.registryState(), RegistryStateNew);
    EXPECT_EQ(TreePrinter::properties(*root.properties()), "dictionary\n"
                                                           "  a: 1 (8 bytes)\n"
                                                           "  b: array\n"
                                                           "    0: true\n");
    EXPECT_EQ(child.dataStore(), store.get());
    EXPECT_EQ(child.registryState(), RegistryStateTerminated);
    EXPECT_FALSE(child.properties());

    const ArchiveValue withoutBytes[] = {QByteArray("not a property list"), QByteArray(""),
                                         QStringLiteral("<plist><true/></plist>"),
                                         SmallStore::at(Root), ArchiveNull()};
    for (const ArchiveValue &value : withoutBytes) {
        sketch.objects[Child].set(L1("properties"), value);
        const auto read = DataStoreDecoder::decode(sketch.bytes());
        ASSERT_TRUE(read) << value.index();
        EXPECT_FALSE(read->registryEntries().at(1)->properties());
    }
}

TEST(DataStoreDecoder, TakesAsManyPlanesAndAsLongNamesAsItAllows)
{
    Sketch sketch = SmallStore::current();
    const QString longest(510, u'p');
    sketch.objects[Store].set(L1("registryPlanes"), ArchiveList(256, longest));
    sketch.objects[Child].set(L1("namesInPlanes"),
                              ArchiveValue(ArchiveDictionary{{longest, QStringLiteral("name")}}));
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store);
    EXPECT_EQ(store->registryPlanes().size(), 256);
    EXPECT_EQ(store->registryEntries()[1]->nameInPlane(longest), QStringLiteral("name"));
}

TEST(DataStoreDecoder, TakesManyPlanesInAnyOrder)
{
    const auto secondsFor = [](int planeCount) {
        ArchiveDictionary names;
        for (int i = planeCount; i-- > 0;) // against the order of the tables
            names.push_back({QStringLiteral("%1").arg(i, 8), QStringLiteral("name")});
        Sketch sketch = SmallStore::current();
        sketch.objects[Child].set(L1("namesInPlanes"), ArchiveValue(names));
        const QByteArray bytes = sketch.bytes();
        const std::clock_t start = std::clock();
        EXPECT_TRUE(DataStoreDecoder::decode(bytes));
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    const double few = secondsFor(2'000);
    EXPECT_LT(secondsFor(100'000), 50 * 10 * std::max(few, 1e-3));
}

#include "store/DataStoreDecoder.h"
#include "store/FileVersionExceptions.h"
#include "tests/support/ArchiveSeal.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallStore.h"
#include "tests/support/StorePrinter.h"
#include "tests/support/TreePrinter.h"

#include <ctime>
#include <gtest/gtest.h>

using L1 = QLatin1String;

namespace {

ArchiveReference at(SmallStore::Position position)
{
    return {static_cast<quint32>(position)};
}

ArchiveValue inPlane(const ArchiveList &entries)
{
    return ArchiveDictionary{{QStringLiteral("DxService"), entries}};
}

// What could not be decoded, in the order of the messages.
QStringList undecoded(const QStringList &log)
{
    QStringList names;
    for (const QString &message : log) {
        const QString name = message.section(u':', 0, 0);
        EXPECT_TRUE(name.startsWith(L1("Unable to decode "))) << qPrintable(message);
        names.append(name.mid(17));
    }
    return names;
}

} // namespace

TEST(DataStoreDecoder, ReadsAnArchiveOfAnotherProgram)
{
    ArchiveSketch sketch = SmallStore::current();
    sketch.objects[SmallStore::RootTable].set(L1("dateRead"), QDateTime::currentDateTimeUtc());
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
}

TEST(DataStoreDecoder, FindsKeysInAnyOrderAmongUnknownOnes)
{
    const auto expected = DataStoreDecoder::decode(SmallStore::current().bytes());
    ArchiveSketch sketch = SmallStore::current();
    for (ArchiveSketch::Object &object : sketch.objects) {
        object.set(L1("number of a later version"), -1)
            .set(L1("table of a later version"), inPlane({at(SmallStore::Store), true}));
        std::reverse(object.keys.begin(), object.keys.end());
    }
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store && expected);
    EXPECT_EQ(StorePrinter::print(*store), StorePrinter::print(*expected));
}

TEST(DataStoreDecoder, TakesAbsentValuesWhereTheyAreOptional)
{
    ArchiveSketch sketch = SmallStore::current();
    for (const L1 key :
         {L1("dateDiscovered"), L1("bundleID"), L1("inheritance"), L1("name"), L1("namesInPlanes"),
          L1("location"), L1("locationsInPlanes"), L1("childrenInPlanes"), L1("parentsInPlanes"),
          L1("busyCount"), L1("isActive"), L1("registryState"),
          L1("TavRegistryEntryCoderVersionNumber")})
        sketch.objects[SmallStore::Root].remove(key);
    for (const L1 key : {L1("hostName"), L1("archName"), L1("byteOrder"), L1("lastUpdateDate")})
        sketch.objects[SmallStore::Store].remove(key);
    sketch.objects[SmallStore::Text].remove(L1("name")).remove(L1("parent"));
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store);
    EXPECT_EQ(store->registryEntries().size(), 2U);
    EXPECT_FALSE(store->registryRoot()->isActive());
    EXPECT_EQ(store->byteOrder(), 0);
    TavRegistryProperty *const properties = store->registryRoot()->properties();
    EXPECT_EQ(properties->childAtIndex(0)->parent(), properties) << "as the list of children says";
}

TEST(DataStoreDecoder, ThrowsForOtherVersions)
{
    ArchiveSketch sketch = SmallStore::current();
    auto &store = sketch.objects[SmallStore::Store];
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

    // A container of a later version may look any way at all after its version.
    const QByteArray head = QByteArray("\xd9\xd9\xf7\x9f\x6f") + "vandrel-archive";
    EXPECT_EQ(reasonOf(head + '\x02'), newer);
    EXPECT_EQ(reasonOf(head + "\x18\xff\xf6"), newer);
    EXPECT_EQ(reasonOf(head + '\x00'), QString()) << "there was no earlier version";
    EXPECT_EQ(reasonOf(head + "\x61\x32"), QString());
}

TEST(DataStoreDecoder, ReadsVersionOne)
{
    ArchiveSketch sketch = SmallStore::old();
    sketch.objects[SmallStore::Root]
        .set(L1("properties"), ArchiveValue(QByteArray("<plist version=\"1.0\"><dict>"
                                                       "<key>a</key><integer>1</integer>"
                                                       "<key>b</key><array><true/></array>"
                                                       "</dict></plist>")))
        .set(L1("isNew"), ArchiveValue(true));
    sketch.objects[SmallStore::Child]
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
                                         at(SmallStore::Root), ArchiveNull()};
    for (const ArchiveValue &value : withoutBytes) {
        sketch.objects[SmallStore::Child].set(L1("properties"), value);
        const auto read = DataStoreDecoder::decode(sketch.bytes());
        ASSERT_TRUE(read) << value.index();
        EXPECT_FALSE(read->registryEntries().at(1)->properties());
    }
}

TEST(DataStoreDecoder, LogsWhatCannotBeDecoded)
{
    using Sketch = ArchiveSketch;
    const auto set = [](SmallStore::Position object, L1 key, const ArchiveValue &value) {
        return [=](Sketch &sketch) { sketch.objects[object].set(key, value); };
    };
    const auto remove = [](SmallStore::Position object, L1 key) {
        return [=](Sketch &sketch) { sketch.objects[object].remove(key); };
    };
    const auto ofOld = [](SmallStore::Position object, L1 key) {
        return [=](Sketch &sketch) {
            sketch = SmallStore::old();
            sketch.objects[object].set(key, QStringLiteral("wrong"));
        };
    };
    const auto ofEntry = [](const char *name) {
        return QStringList{QString::fromLatin1(name), QStringLiteral("registryEntries")};
    };
    const auto ofRootNode = [](const char *name) {
        return QStringList{QString::fromLatin1(name), QStringLiteral("properties"),
                           QStringLiteral("registryEntries")};
    };
    const auto ofNode = [](const char *name) {
        return QStringList{QString::fromLatin1(name), QStringLiteral("contents.children"),
                           QStringLiteral("properties"), QStringLiteral("registryEntries")};
    };
    const auto inLongPlane = [](const ArchiveValue &value) -> ArchiveValue {
        return ArchiveDictionary{{QString(511, u'p'), value}};
    };
    const ArchiveValue wrong = true; // a boolean where none belongs
    const std::pair<std::function<void(Sketch &)>, QStringList> cases[] = {
        {remove(SmallStore::Store, L1("registryEntries")), {QStringLiteral("registryEntries")}},
        {set(SmallStore::Store, L1("hostName"), wrong), {QStringLiteral("registryEntries")}},
        {set(SmallStore::Store, L1("registryEntries"), ArchiveList{at(SmallStore::Text)}),
         {QStringLiteral("registryEntries")}},
        {set(SmallStore::Store, L1("registryEntries"),
             ArchiveList{at(SmallStore::Root), at(SmallStore::Root)}),
         {QStringLiteral("registryEntries")}},
        {remove(SmallStore::Store, L1("registryPlanes")), {QStringLiteral("registryPlanes")}},
        {set(SmallStore::Store, L1("registryPlanes"), ArchiveList(257, QStringLiteral("p"))),
         {QStringLiteral("registryPlanes")}},
        {set(SmallStore::Store, L1("registryPlanes"), ArchiveList{QString(511, u'p')}),
         {QStringLiteral("registryPlanes")}},
        {set(SmallStore::Store, L1("lastUpdateDate"), wrong), {QStringLiteral("the archive")}},
        {[](Sketch &s) { s.objects[SmallStore::Store].className = QStringLiteral("Other"); },
         {QStringLiteral("the archive")}},
        {set(SmallStore::Store, L1("dataStoreVersion"), QStringLiteral("2")),
         {QStringLiteral("the archive")}},
        {[](Sketch &s) { s.objects[SmallStore::Store].set(L1("dataStoreVersion"), -1); },
         {QStringLiteral("the archive")}},

        {set(SmallStore::Child, L1("dateDiscovered"), wrong), ofEntry("dateDiscovered")},
        {set(SmallStore::Child, L1("dateLastUpdated"), wrong), ofEntry("dateLastUpdated")},
        {set(SmallStore::Child, L1("dateTerminated"), wrong), ofEntry("dateTerminated")},
        {set(SmallStore::Child, L1("bundleID"), wrong), ofEntry("bundleID")},
        {set(SmallStore::Child, L1("inheritance"), wrong), ofEntry("inheritance")},
        {set(SmallStore::Child, L1("inheritance"), ArchiveList{wrong}), ofEntry("inheritance")},
        {set(SmallStore::Child, L1("name"), wrong), ofEntry("name")},
        {set(SmallStore::Child, L1("namesInPlanes"), wrong), ofEntry("namesInPlanes")},
        {set(SmallStore::Child, L1("namesInPlanes"), inPlane({})), ofEntry("namesInPlanes")},
        {set(SmallStore::Child, L1("namesInPlanes"), inLongPlane(QStringLiteral("name"))),
         ofEntry("namesInPlanes")},
        {set(SmallStore::Child, L1("location"), wrong), ofEntry("location")},
        {set(SmallStore::Child, L1("locationsInPlanes"), wrong), ofEntry("location")},
        {set(SmallStore::Child, L1("childrenInPlanes"), wrong), ofEntry("location")},
        {set(SmallStore::Child, L1("parentsInPlanes"), wrong), ofEntry("location")},
        {set(SmallStore::Root, L1("childrenInPlanes"),
             inLongPlane(ArchiveList{at(SmallStore::Child)})),
         ofEntry("location")},
        {set(SmallStore::Root, L1("childrenInPlanes"), inPlane({at(SmallStore::Text)})),
         ofEntry("location")},
        {set(SmallStore::Root, L1("childrenInPlanes"),
             inPlane({at(SmallStore::Child), at(SmallStore::Child)})),
         ofEntry("location")},
        {set(SmallStore::Child, L1("dataStore"), wrong), ofEntry("dataStore")},
        {set(SmallStore::Child, L1("isActive"), QStringLiteral("yes")), ofEntry("dataStore")},
        {remove(SmallStore::Child, L1("properties")), ofEntry("properties")},
        {set(SmallStore::Child, L1("properties"), at(SmallStore::Root)), ofEntry("properties")},
        {set(SmallStore::Child, L1("properties"), at(SmallStore::RootTable)),
         ofEntry("properties")},
        {[](Sketch &s) { s.objects[SmallStore::Child].set(L1("registryState"), 4); },
         ofEntry("properties")},
        {[](Sketch &s) {
             s.objects[SmallStore::Child].set(L1("TavRegistryEntryCoderVersionNumber"), 3);
         },
         {QStringLiteral("registryEntries")}},

        {ofOld(SmallStore::Root, L1("isNew")), ofEntry("properties")},
        {ofOld(SmallStore::Child, L1("terminationAcknowledged")), ofEntry("properties")},
        {ofOld(SmallStore::Child, L1("busyCount")), ofEntry("properties")},

        {remove(SmallStore::Text, L1("registryEntry")), ofNode("registryEntry")},
        {set(SmallStore::Text, L1("registryEntry"), at(SmallStore::Child)),
         ofNode("registryEntry")},
        {set(SmallStore::Text, L1("parent"), wrong), ofNode("parent")},
        {set(SmallStore::Text, L1("parent"), at(SmallStore::Text)), ofNode("parent")},
        {set(SmallStore::RootTable, L1("parent"), at(SmallStore::List)), ofRootNode("parent")},
        {set(SmallStore::Text, L1("name"), wrong), ofNode("ident.name")},
        {remove(SmallStore::List, L1("children")), ofNode("contents.children")},
        {set(SmallStore::List, L1("children"), ArchiveList{at(SmallStore::RootTable)}),
         ofNode("contents.children")},
        {set(SmallStore::List, L1("children"), ArchiveList{at(SmallStore::List)}),
         ofNode("contents.children")},
        {[](Sketch &s) {
             s.objects[SmallStore::Element].className = QStringLiteral("TavRegistryProperty");
         },
         ofNode("contents.children")},
        {remove(SmallStore::Text, L1("value")), ofNode("contents.value")},
        {set(SmallStore::Text, L1("value"), at(SmallStore::Root)), ofNode("contents.value")},
        {[](Sketch &s) {
             s.objects[SmallStore::Text].set(L1("TavRegistryPropertyCoderVersionNumber"), 3);
         },
         {QStringLiteral("contents.children"), QStringLiteral("properties"),
          QStringLiteral("registryEntries")}},
    };
    for (const auto &[change, expected] : cases) {
        ArchiveSketch sketch = SmallStore::current();
        change(sketch);
        const QByteArray bytes = sketch.bytes();
        LogCapture log;
        EXPECT_FALSE(DataStoreDecoder::decode(bytes)) << qPrintable(expected.join(u' '));
        EXPECT_EQ(undecoded(log.messages()), expected)
            << "case " << &change - &cases[0].first << '\n'
            << qPrintable(log.messages().join(u'\n'));
    }
}

TEST(DataStoreDecoder, RefusesCyclesInAPlane)
{
    for (const L1 key : {L1("childrenInPlanes"), L1("parentsInPlanes")}) {
        ArchiveSketch sketch = SmallStore::current();
        sketch.objects[SmallStore::Root].set(key, inPlane({at(SmallStore::Child)}));
        sketch.objects[SmallStore::Child].set(key, inPlane({at(SmallStore::Root)}));
        LogCapture log;
        EXPECT_FALSE(DataStoreDecoder::decode(sketch.bytes()));
        EXPECT_TRUE(log.messages().join(u' ').contains(L1("own ancestor")));
    }
}

// Each layer has two entries, and both have the layer above for their parents.
TEST(DataStoreDecoder, RefusesMorePathsThanCanBeFollowed)
{
    const auto layered = [](quint32 layers, L1 key, std::size_t otherObjects = 0) {
        ArchiveSketch sketch = SmallStore::old();
        ArchiveList entries{at(SmallStore::Root)};
        const ArchiveSketch::Object entry =
            ArchiveSketch::Object(sketch.objects[SmallStore::Child]).remove(L1("parentsInPlanes"));
        sketch.objects.resize(SmallStore::Child, entry);
        sketch.objects.resize(sketch.objects.size() + otherObjects, {QStringLiteral("Other"), {}});
        ArchiveList above{at(SmallStore::Root)};
        for (quint32 layer = 0; layer < layers; ++layer) {
            const auto first = static_cast<quint32>(sketch.objects.size());
            const ArchiveList pair{ArchiveReference{first}, ArchiveReference{first + 1}};
            sketch.objects.insert(sketch.objects.end(), 2, entry);
            for (const ArchiveValue &lower : pair) {
                entries.push_back(lower);
                if (key == L1("parentsInPlanes"))
                    sketch.objects[lower.get<ArchiveReference>()->index].set(key, inPlane(above));
            }
            for (const ArchiveValue &upper : above) {
                if (key == L1("childrenInPlanes"))
                    sketch.objects[upper.get<ArchiveReference>()->index].set(key, inPlane(pair));
            }
            above = pair;
        }
        sketch.objects[SmallStore::Store].set(L1("registryEntries"), ArchiveValue(entries));
        return sketch.bytes();
    };
    for (const L1 key : {L1("childrenInPlanes"), L1("parentsInPlanes")}) {
        EXPECT_TRUE(DataStoreDecoder::decode(layered(15, key))) << key.data();
        LogCapture log;
        EXPECT_FALSE(DataStoreDecoder::decode(layered(40, key))) << key.data();
        EXPECT_FALSE(DataStoreDecoder::decode(layered(400, key))) << key.data();
        EXPECT_FALSE(DataStoreDecoder::decode(layered(19, key, 4000))) << "only entries count";
        EXPECT_TRUE(log.messages().join(u' ').contains(L1("more paths"))) << key.data();
    }
}

TEST(DataStoreDecoder, TakesAsManyPlanesAndAsLongNamesAsItAllows)
{
    ArchiveSketch sketch = SmallStore::current();
    const QString longest(510, u'p');
    sketch.objects[SmallStore::Store].set(L1("registryPlanes"), ArchiveList(256, longest));
    sketch.objects[SmallStore::Child].set(
        L1("namesInPlanes"), ArchiveValue(ArchiveDictionary{{longest, QStringLiteral("name")}}));
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
        ArchiveSketch sketch = SmallStore::current();
        sketch.objects[SmallStore::Child].set(L1("namesInPlanes"), ArchiveValue(names));
        const QByteArray bytes = sketch.bytes();
        const std::clock_t start = std::clock();
        EXPECT_TRUE(DataStoreDecoder::decode(bytes));
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    const double few = secondsFor(2'000);
    EXPECT_LT(secondsFor(100'000), 50 * 10 * std::max(few, 1e-3));
}

TEST(DataStoreDecoder, SurvivesEveryFlippedBit)
{
    const QByteArray content = unsealArchive(SmallStore::current().bytes());
    ASSERT_TRUE(DataStoreDecoder::decode(sealArchive(content)));
    LogCapture log;
    for (qsizetype i = 0; i < content.size(); ++i) {
        for (int flip = 1; flip < 256; flip *= 2) {
            QByteArray flipped = content;
            flipped[i] = static_cast<char>(flipped[i] ^ flip);
            try {
                if (const auto store = DataStoreDecoder::decode(sealArchive(flipped)))
                    TreePrinter::plane(*store, QStringLiteral("DxService"));
            } catch (const UnsupportedFileVersionException &) {
                // as good an answer as any
            }
        }
    }
}

// SPDX-License-Identifier: Apache-2.0
// Invalid archives.
#include "store/DataStoreDecoder.h"
#include "store/FileVersionExceptions.h"
#include "tests/support/ArchiveSeal.h"
#include "tests/support/EncodedStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallStack.h"
#include "tests/support/SmallStore.h"
#include "tests/support/TreePrinter.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using L1 = QLatin1String;
using Sketch = ArchiveSketch;
using enum SmallStore::Position;

namespace {
const auto at = &SmallStore::at;
const auto inPlane = &SmallStore::inPlane;

// One wrong key of the small store, and the first thing that then cannot be decoded.
struct Fault
{
    SmallStore::Position object;
    const char *key;
    std::optional<Sketch::Value> value; // none: absent
    const char *undecoded;

    void put(Sketch &sketch) const
    {
        if (value)
            sketch.objects[object].set(L1(key), *value);
        else
            sketch.objects[object].remove(L1(key));
    }
    // An object fails with the one that holds it.
    QStringList expectedLog() const
    {
        QStringList names{QString::fromLatin1(undecoded)};
        if (object >= Text)
            names.append(QStringLiteral("contents.children"));
        if (object >= RootTable)
            names.append(QStringLiteral("properties"));
        if (object >= Root)
            names.append(QStringLiteral("registryEntries"));
        names.removeAll(QString());
        return names.replaceInStrings(QRegularExpression(QStringLiteral("^")),
                                      QStringLiteral("Unable to decode "));
    }
};

void expectRefused(const Sketch &sketch, const QStringList &expectedLog)
{
    const LogCapture log;
    EXPECT_FALSE(DataStoreDecoder::decode(sketch.bytes()));
    QStringList logged;
    for (const QString &message : log.messages())
        logged.append(message.section(u':', 0, 0));
    EXPECT_EQ(logged, expectedLog) << qPrintable(log.messages().join(u'\n'));
}

constexpr quint32 manyLevels = 200'000;

Sketch levelsOfEntries()
{
    const auto toward = [](quint32 object) {
        return inPlane(ArchiveList{ArchiveReference{object}});
    };
    Sketch sketch{{SmallStore::old().objects[Store]}};
    ArchiveList entries;
    for (quint32 i = 1; i <= manyLevels; ++i) {
        auto &entry = sketch.objects.emplace_back();
        entry.className = QStringLiteral("TavRegistryEntry");
        if (i < manyLevels)
            entry.set(QLatin1String("childrenInPlanes"), toward(i + 1));
        if (i > 1)
            entry.set(QLatin1String("parentsInPlanes"), toward(i - 1));
        entries.push_back(ArchiveReference{i});
    }
    sketch.objects[Store].set(QLatin1String("registryEntries"), ArchiveValue(entries));
    return sketch;
}

// Below the root's table.
Sketch levelsOfNodes()
{
    Sketch sketch = SmallStore::current();
    const Sketch::Object list = sketch.objects[List];
    const QLatin1String children("children");
    sketch.objects.resize(Element);
    for (quint32 i = 1; i < manyLevels; ++i) {
        const auto object = static_cast<quint32>(sketch.objects.size());
        sketch.objects.push_back(list);
        sketch.objects.back()
            .set(QLatin1String("parent"), ArchiveValue(ArchiveReference{object - 1}))
            .set(children, ArchiveList{ArchiveReference{object + 1}});
    }
    sketch.objects.back().set(children, ArchiveValue(ArchiveList()));
    return sketch;
}

// Enough children, each with a table, for decoding on two threads.
Sketch manyChildren()
{
    Sketch sketch = SmallStore::current();
    ArchiveList entries{at(Root), at(Child)};
    for (int i = 0; i < 5000; ++i) {
        const ArchiveReference child{static_cast<quint32>(sketch.objects.size())};
        const ArchiveReference table{child.index + 1};
        Sketch::Object childObject = sketch.objects[Child];
        Sketch::Object tableObject = sketch.objects[ChildTable];
        sketch.objects.push_back(childObject.set(L1("properties"), ArchiveValue(table)));
        sketch.objects.push_back(tableObject.set(L1("registryEntry"), ArchiveValue(child)));
        entries.emplace_back(child);
    }
    sketch.objects[Store].set(L1("registryEntries"), ArchiveValue(entries));
    return sketch;
}

quint32 entryLevels(const TavDataStore &store)
{
    quint32 levels = 0;
    for (EntryList::Entries level{store.registryRoot()}; !level.empty(); ++levels)
        level = level.front()->childrenInPlane(QStringLiteral("DxService"));
    return levels;
}

quint32 nodeLevels(const TavDataStore &store)
{
    quint32 levels = 0;
    for (auto *node = store.registryRoot()->properties()->childAtIndex(1); node; ++levels)
        node = node->numberOfChildren() > 0 ? node->childAtIndex(0) : nullptr;
    return levels;
}
} // namespace

TEST(DataStoreDecoderFaults, LogsWhatCannotBeDecoded)
{
    const auto inLongPlane = [](const ArchiveValue &value) -> ArchiveValue {
        return ArchiveDictionary{{QString(511, u'p'), value}};
    };
    const ArchiveValue tooLong = QString(511, u'n');
    const ArchiveValue wrong = true; // a boolean where none belongs
    const auto text = [](const char *its) -> ArchiveValue { return QString::fromLatin1(its); };
    std::vector<Fault> faults{
        {Store, "registryEntries", {}, "registryEntries"},
        {Store, "registryEntries", ArchiveList{at(Text)}, "registryEntries"},
        {Store, "registryEntries", ArchiveList{at(Root), at(Root)}, "registryEntries"},
        {Store, "hostName", wrong, "hostName"},
        {Store, "registryPlanes", {}, "registryPlanes"},
        {Store, "registryPlanes", ArchiveList(257, QStringLiteral("p")), "registryPlanes"},
        {Store, "registryPlanes", ArchiveList{QString(511, u'p')}, "registryPlanes"},
        {Store, "lastUpdateDate", wrong, "lastUpdateDate"},
        {Store, "dataStoreVersion", text("2"), "dataStoreVersion"},
        {Store, "dataStoreVersion", -1, "dataStoreVersion"},

        {Child, "inheritance", ArchiveList{wrong}, "inheritance"},
        {Child, "inheritance", ArchiveList(257, QStringLiteral("c")), "inheritance"},
        {Child, "inheritance", ArchiveList{tooLong}, "inheritance"},
        {Child, "bundleID", tooLong, "bundleID"},
        {Child, "name", tooLong, "name"},
        {Child, "location", tooLong, "location"},
        {Child, "namesInPlanes", inPlane(tooLong), "namesInPlanes"},
        {Child, "namesInPlanes", inPlane(ArchiveList{}), "namesInPlanes"},
        {Child, "namesInPlanes", inLongPlane(text("name")), "namesInPlanes"},
        {Child, "locationsInPlanes", wrong, "location"},
        {Child, "childrenInPlanes", wrong, "location"},
        {Child, "parentsInPlanes", wrong, "location"},
        {Root, "childrenInPlanes", inLongPlane(ArchiveList{at(Child)}), "location"},
        {Root, "childrenInPlanes", inPlane(ArchiveList{at(Text)}), "location"},
        {Root, "childrenInPlanes", inPlane(ArchiveList{at(Child), at(Child)}), "location"},
        {Child, "isActive", text("yes"), "isActive"},
        {Child, "properties", {}, "properties"},
        {Child, "properties", at(Root), "properties"},
        {Child, "properties", at(RootTable), "properties"},
        {Child, "registryState", 4, "registryState"},
        {Child, "TavRegistryEntryCoderVersionNumber", 3, ""},

        {Text, "registryEntry", {}, "registryEntry"},
        {Text, "registryEntry", at(Child), "registryEntry"},
        {Text, "parent", wrong, "parent"},
        {Text, "parent", at(Text), "parent"},
        {RootTable, "parent", at(List), "parent"},
        {Text, "name", wrong, "ident.name"},
        {Text, "hasName", text("yes"), "hasName"},
        {List, "children", {}, "contents.children"},
        {List, "children", ArchiveList{at(RootTable)}, "contents.children"},
        {List, "children", ArchiveList{at(List)}, "contents.children"},
        {Text, "value", {}, "contents.value"},
        {Text, "value", at(Root), "contents.value"},
        {Text, "TavRegistryPropertyCoderVersionNumber", 3, ""},
    };
    for (const char *key : {"dateDiscovered", "dateLastUpdated", "dateTerminated", "bundleID",
                            "inheritance", "name", "namesInPlanes", "location", "dataStore"})
        faults.push_back({Child, key, wrong, key});
    for (const Fault &fault : faults) {
        SCOPED_TRACE(testing::Message() << fault.key << ", fault " << &fault - faults.data());
        Sketch sketch = SmallStore::current();
        fault.put(sketch);
        expectRefused(sketch, fault.expectedLog());
    }
    for (const Fault &fault :
         {Fault{Root, "isNew", text("wrong"), "isNew"},
          Fault{Child, "terminationAcknowledged", text("wrong"), "terminationAcknowledged"},
          Fault{Child, "busyCount", text("wrong"), "busyCount"}}) {
        SCOPED_TRACE(fault.key);
        Sketch sketch = SmallStore::old();
        fault.put(sketch);
        expectRefused(sketch, fault.expectedLog());
    }
    Sketch sketch = SmallStore::current();
    sketch.objects[Element].className = QStringLiteral("TavRegistryProperty");
    expectRefused(sketch, Fault{Element, "", {}, "contents.children"}.expectedLog());
    sketch = SmallStore::current();
    sketch.objects[Store].className = QStringLiteral("Other");
    expectRefused(sketch, {QStringLiteral("Unable to decode the archive")});
}

TEST(DataStoreDecoderFaults, LogsTheSameOnTwoThreads)
{
    const auto store = DataStoreDecoder::decode(manyChildren().bytes());
    ASSERT_TRUE(store);
    EXPECT_EQ(store->registryEntries().size(), 5002U);
    EXPECT_TRUE(store->registryEntries().back()->properties());

    Sketch facts = manyChildren();
    facts.objects[facts.objects.size() - 2].set(L1("name"), ArchiveValue(true));
    expectRefused(facts, {QStringLiteral("Unable to decode name"),
                          QStringLiteral("Unable to decode registryEntries")});
    Sketch properties = manyChildren();
    properties.objects.back().set(L1("isCollection"), ArchiveValue(QStringLiteral("text")));
    expectRefused(properties, {QStringLiteral("Unable to decode isCollection"),
                               QStringLiteral("Unable to decode properties"),
                               QStringLiteral("Unable to decode registryEntries")});
}

TEST(DataStoreDecoderFaults, RefusesCyclesInAPlane)
{
    for (const L1 key : {L1("childrenInPlanes"), L1("parentsInPlanes")}) {
        Sketch sketch = SmallStore::current();
        sketch.objects[Root].set(key, inPlane(ArchiveList{at(Child)}));
        sketch.objects[Child].set(key, inPlane(ArchiveList{at(Root)}));
        LogCapture log;
        EXPECT_FALSE(DataStoreDecoder::decode(sketch.bytes()));
        EXPECT_TRUE(log.messages().join(u' ').contains(L1("own ancestor")));
    }
}

// Each layer has two entries with both entries of the layer above as parents.
TEST(DataStoreDecoderFaults, RefusesMorePathsThanCanBeFollowed)
{
    const auto layered = [](quint32 layers, L1 key, std::size_t otherObjects = 0) {
        Sketch sketch = SmallStore::old();
        ArchiveList entries{at(Root)};
        const Sketch::Object entry =
            Sketch::Object(sketch.objects[Child]).remove(L1("parentsInPlanes"));
        sketch.objects.resize(Child, entry);
        sketch.objects.resize(sketch.objects.size() + otherObjects, {QStringLiteral("Other"), {}});
        ArchiveList above{at(Root)};
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
        sketch.objects[Store].set(L1("registryEntries"), ArchiveValue(entries));
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

TEST(DataStoreDecoderFaults, SurvivesEveryFlippedBit)
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
                // acceptable, too
            }
        }
    }
}

TEST(DataStoreDecoderFaults, ManyLevelsNeedNoStack)
{
    onSmallStack([] {
        for (const auto &[sketch, levelsOf] : {std::pair{levelsOfEntries(), &entryLevels},
                                               std::pair{levelsOfNodes(), &nodeLevels}}) {
            const auto read = DataStoreDecoder::decode(sketch.bytes());
            ASSERT_TRUE(read);
            EXPECT_EQ(levelsOf(*read), manyLevels);
            const auto again = DataStoreDecoder::decode(encoded(*read));
            ASSERT_TRUE(again);
            EXPECT_EQ(levelsOf(*again), manyLevels);
        }
    });
}

#include "platform/ArchiveReader.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/LogCapture.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryGenerator.h"
#include "tests/support/SimulatedRunLoop.h"
#include "tests/support/SmallStore.h"
#include "tests/support/StorePrinter.h"
#include "tests/support/TreeBuilder.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <QBuffer>
#include <QThread>
#include <gtest/gtest.h>

namespace {

QByteArray encoded(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    EXPECT_TRUE(DataStoreEncoder::encode(store, device).isNull());
    return device.data();
}

// The store as it is when read back.
std::unique_ptr<TavDataStore> reopened(const TavDataStore &store)
{
    return DataStoreDecoder::decode(encoded(store));
}

bool hasConsistentParents(TavRegistryProperty &node)
{
    const auto children = node.children();
    return std::all_of(children.begin(), children.end(), [&](TavRegistryProperty *child) {
        return child->parent() == &node && hasConsistentParents(*child);
    });
}

constexpr quint32 manyLevels = 200'000;

ArchiveSketch levelsOfEntries()
{
    const auto inPlane = [](quint32 object) -> ArchiveValue {
        return ArchiveDictionary{
            {QStringLiteral("DxService"), ArchiveList{ArchiveReference{object}}}};
    };
    ArchiveSketch sketch{{SmallStore::old().objects[SmallStore::Store]}};
    ArchiveList entries;
    for (quint32 i = 1; i <= manyLevels; ++i) {
        auto &entry = sketch.objects.emplace_back();
        entry.className = QStringLiteral("TavRegistryEntry");
        if (i < manyLevels)
            entry.set(QLatin1String("childrenInPlanes"), inPlane(i + 1));
        if (i > 1)
            entry.set(QLatin1String("parentsInPlanes"), inPlane(i - 1));
        entries.push_back(ArchiveReference{i});
    }
    sketch.objects[SmallStore::Store].set(QLatin1String("registryEntries"), ArchiveValue(entries));
    return sketch;
}

// Below the root's table.
ArchiveSketch levelsOfNodes()
{
    ArchiveSketch sketch = SmallStore::current();
    const ArchiveSketch::Object list = sketch.objects[SmallStore::List];
    const QLatin1String children("children");
    sketch.objects.resize(SmallStore::Element);
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

class DataStoreArchive : public testing::Test
{
protected:
    FakeRegistryService registry_;
};

} // namespace

TEST_F(DataStoreArchive, RoundTripsAGeneratedRegistry)
{
    RegistryGenerator::generate(registry_, {.entries = 500, .nodesPerEntry = 40, .seed = 7});
    const auto store = TavDataStore::initFromDxRegistry(registry_);
    const QByteArray bytes = encoded(*store);
    const auto read = DataStoreDecoder::decode(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(StorePrinter::print(*read), StorePrinter::print(*store));
    EXPECT_FALSE(read->isLive());
    for (const EntryRef &entry : read->registryEntries()) {
        ASSERT_EQ(entry->properties()->registryEntry(), entry);
        ASSERT_TRUE(hasConsistentParents(*entry->properties()));
    }
    // What was read is written the same, but for the time of reading, which is not read back.
    const QByteArray again = encoded(*read);
    EXPECT_EQ(again, encoded(*DataStoreDecoder::decode(again)));
}

TEST_F(DataStoreArchive, WritesTheKeysOfEachClassInOrder)
{
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n  Host\n");
    registry_.setProperties(
        tree["Host"],
        RegistryValue::dictionary({
            {CompactString(QStringLiteral("list")),
             RegistryValue::array({RegistryValue::boolean(true), RegistryValue::array({})})},
        }));
    registry_.publishPlanes();
    ArchiveTable table;
    ASSERT_TRUE(ArchiveReader(encoded(*TavDataStore::initFromDxRegistry(registry_))).read(table));
    QByteArrayList shapes;
    for (const ArchiveTable::Shape &shape : table.shapes) {
        QByteArrayList keys;
        for (const ArchiveTable::Key &key : shape.keys)
            keys.append(key.isInteger ? '#' + key.name : key.name);
        shapes.append(shape.className + ": " + keys.join(' '));
    }
    std::sort(shapes.begin(), shapes.end());
    const QByteArray node = "TavPropertyOutlineItem: #TavRegistryPropertyCoderVersionNumber "
                            "isCollection hasName dateRead registryEntry #registryState parent ";
    const QByteArray store = "TavDataStore: #dataStoreVersion hostName archName byteOrder "
                             "registryEntries registryPlanes lastUpdateDate isUpToDate";
    const QByteArray entry =
        "TavRegistryEntry: #TavRegistryEntryCoderVersionNumber dataStore dateDiscovered "
        "dateLastUpdated dateTerminated bundleID inheritance name namesInPlanes location "
        "locationsInPlanes childrenInPlanes parentsInPlanes #entryTag #busyCount "
        "#kernelRetainCount isRegistryRoot conformsToDxService isRegistered isMatched isActive "
        "#registryState properties";
    const QByteArrayList expected{store,
                                  node + "#index #collectionType children",
                                  node + "#index value",
                                  node + "name #collectionType children",
                                  node + "name value",
                                  entry};
    EXPECT_EQ(shapes.join('\n'), expected.join('\n'));
}

TEST_F(DataStoreArchive, IsNeverReadAnewOnceOpened)
{
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n  Host\n");
    registry_.publishPlanes();
    const auto read = reopened(*TavDataStore::initFromDxRegistry(registry_));
    ASSERT_TRUE(read);
    const std::string before = StorePrinter::print(*read);
    SimulatedRunLoop loop;
    LogCapture log;
    read->setUpToDate(false);
    read->setAutoupdate(true);
    read->setPolledUpdate(true);
    read->setPollInterval(1);
    EXPECT_EQ(loop.pendingTimers(), 0U);
    read->setUpToDate(true);
    read->update();
    read->updateObject(*read->registryRoot());
    EXPECT_EQ(log.messages(),
              QStringList{QStringLiteral("Attempt to update a non-live data store\n")});
    EXPECT_EQ(StorePrinter::print(*read), before);
}

TEST_F(DataStoreArchive, KeepsMarksDatesAndTerminatedEntries)
{
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n  Host\n    going@1 : DxDevice : DxService\n    staying\n")
        .plane("DxBus", "Root\n  Host\n    going@1\n");
    registry_.publishPlanes();
    const auto store = TavDataStore::initFromDxRegistry(registry_);
    TavRegistryEntry *const going = store->registryEntries().at(2).get();
    TavRegistryEntry *const staying = store->registryEntries().at(3).get();
    store->updateObject(*staying);
    going->noteTerminatedAtDate(QDateTime::fromMSecsSinceEpoch(1234567890123, Qt::UTC), true);
    going->properties()->setRegistryState(RegistryStateChanged);
    const auto read = reopened(*store);
    ASSERT_TRUE(read);
    EXPECT_EQ(StorePrinter::print(*read), StorePrinter::print(*store));
    EXPECT_EQ(read->registryEntries().at(2)->dateTerminated(), going->dateTerminated());
    EXPECT_EQ(read->registryEntries().at(3)->dateLastUpdated(), staying->dateLastUpdated());
}

TEST_F(DataStoreArchive, KeepsTerminatedCopiesAmongProperties)
{
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n  Host\n");
    registry_.setProperties(tree["Host"],
                            RegistryValue::dictionary({
                                {CompactString(QStringLiteral("gone")),
                                 RegistryValue::array({RegistryValue::boolean(true)})},
                            }));
    registry_.publishPlanes();
    const auto store = TavDataStore::initFromDxRegistry(registry_);
    TavRegistryEntry &host = *store->registryEntries().at(1);
    const PropertyRef older = host.propertiesRef();
    registry_.setProperties(tree["Host"], RegistryValue::dictionary({}));
    store->updateObject(host);
    ASSERT_TRUE(host.properties()->noteChangesFromProperty(*older));

    const auto read = reopened(*store);
    ASSERT_TRUE(read);
    TavRegistryProperty &properties = *read->registryEntries().at(1)->properties();
    ASSERT_EQ(properties.numberOfChildren(), 1);
    const TavRegistryProperty &copy = *properties.childAtIndex(0);
    EXPECT_EQ(copy.registryState(), RegistryStateTerminated);
    EXPECT_EQ(copy.numberOfChildren(), 1);
    EXPECT_TRUE(hasConsistentParents(properties));
}

TEST_F(DataStoreArchive, OpensAStoreWithAnEntryThatLostItsProperties)
{
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n  Host\n");
    registry_.publishPlanes();
    const auto store = TavDataStore::initFromDxRegistry(registry_);
    registry_.setFailures(tree["Host"], FakeRegistry::PropertiesFail);
    store->update();
    ASSERT_FALSE(store->registryEntries().at(1)->properties());
    const auto read = reopened(*store);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->registryEntries().at(1)->properties()->numberOfChildren(), 0);
}

// Below the bus stands "above" with "below" under it; then their places are exchanged.
class DataStoreArchiveOfTurnedEntries : public testing::Test
{
protected:
    DataStoreArchiveOfTurnedEntries()
    {
        tree_.plane("DxService", "Root\n  bus\n    above : DxDevice : DxService\n      below\n");
        registry_.publishPlanes();
        store_ = TavDataStore::initFromDxRegistry(registry_);
    }
    void turn()
    {
        registry_.unlink(tree_["bus"], tree_["above"], "DxService");
        registry_.unlink(tree_["above"], tree_["below"], "DxService");
        registry_.link(tree_["bus"], tree_["below"], "DxService");
        registry_.link(tree_["below"], tree_["above"], "DxService");
    }
    TavRegistryEntry &entry(std::size_t i) { return *store_->registryEntries().at(i); }
    void expectReopenedTree(const char *text)
    {
        const auto read = reopened(*store_);
        ASSERT_TRUE(read);
        EXPECT_EQ(TreePrinter::plane(*read, plane_), dedented(text));
        for (std::size_t i = 0; i < read->registryEntries().size(); ++i)
            EXPECT_EQ(read->registryEntries()[i]->registryPathsInPlane(plane_),
                      entry(i).registryPathsInPlane(plane_));
    }

    SimulatedRunLoop loop_;
    FakeLiveService registry_;
    TreeBuilder tree_{registry_};
    std::unique_ptr<TavDataStore> store_;
    const QString plane_ = QStringLiteral("DxService");
};

TEST_F(DataStoreArchiveOfTurnedEntries, OpensWhenTheUpperOneIsTerminated)
{
    store_->setAutoupdate(true);
    registry_.terminate(tree_["above"]);
    turn();
    registry_.tellOfChange();
    loop_.advance(1);
    ASSERT_EQ(entry(2).registryState(), RegistryStateTerminated);
    ASSERT_TRUE(entry(3).allDescendantsInPlane(plane_).contains(&entry(3))) << "no cycle was made";
    expectReopenedTree(R"(
        Root
          bus
            above (terminated)
              below
            below
    )");
}

TEST_F(DataStoreArchiveOfTurnedEntries, OpensWhenOneIsReadAlone)
{
    turn();
    store_->updateObject(entry(3));
    ASSERT_TRUE(entry(3).allDescendantsInPlane(plane_).contains(&entry(3))) << "no cycle was made";
    ASSERT_TRUE(entry(3).allAncestorsInPlane(plane_).contains(&entry(3))) << "no cycle was made";
    expectReopenedTree(R"(
        Root
          bus
            above
              below
    )");
}

// Each layer has two entries, and both have the layer above for their parents.
TEST_F(DataStoreArchive, IsNotWrittenWithMorePathsThanCanBeRead)
{
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n");
    std::vector<FakeRegistry::Node> above{tree["Root"]};
    for (int layer = 0; layer < 20; ++layer) {
        const std::vector pair{registry_.add(QStringLiteral("DxDevice"), "a"),
                               registry_.add(QStringLiteral("DxDevice"), "b")};
        for (const auto parent : above) {
            for (const auto child : pair)
                registry_.link(parent, child, "DxService");
        }
        above = pair;
    }
    registry_.publishPlanes();
    const auto store = TavDataStore::initFromDxRegistry(registry_);
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    EXPECT_TRUE(DataStoreEncoder::encode(*store, device).contains(QLatin1String("paths")));
    EXPECT_TRUE(device.data().isEmpty());
}

TEST_F(DataStoreArchive, IsNotWrittenWithPlanesThatAreRefused)
{
    const auto problemWith = [](int planes, const QByteArray &lastName) {
        FakeRegistryService registry;
        TreeBuilder tree(registry);
        for (int i = 1; i < planes; ++i)
            tree.plane("Plane" + QByteArray::number(i), "Root\n  child");
        tree.plane(lastName, "Root\n  child");
        const auto store = TavDataStore::initFromDxRegistry(registry);
        EXPECT_EQ(store->registryPlanes().size(), planes);
        QBuffer device;
        device.open(QIODevice::WriteOnly);
        const QString problem = DataStoreEncoder::encode(*store, device);
        EXPECT_EQ(device.data().isEmpty(), !problem.isNull());
        return problem;
    };
    EXPECT_TRUE(problemWith(256, QByteArray(510, 'p')).isNull());
    EXPECT_TRUE(problemWith(257, "last").contains(QLatin1String("too many planes")));
    EXPECT_TRUE(problemWith(1, QByteArray(511, 'p')).contains(QLatin1String("too long")));
}

TEST(DataStoreArchiveOfManyLevels, NeedsNoStack)
{
    const auto thread = std::unique_ptr<QThread>(QThread::create([] {
        const auto entries = DataStoreDecoder::decode(levelsOfEntries().bytes());
        ASSERT_TRUE(entries);
        EXPECT_EQ(entryLevels(*entries), manyLevels);
        const auto entriesAgain = reopened(*entries);
        ASSERT_TRUE(entriesAgain);
        EXPECT_EQ(entryLevels(*entriesAgain), manyLevels);

        const auto nodes = DataStoreDecoder::decode(levelsOfNodes().bytes());
        ASSERT_TRUE(nodes);
        EXPECT_EQ(nodeLevels(*nodes), manyLevels);
        const auto nodesAgain = reopened(*nodes);
        ASSERT_TRUE(nodesAgain);
        EXPECT_EQ(nodeLevels(*nodesAgain), manyLevels);
    }));
    thread->setStackSize(256 * 1024);
    thread->start();
    thread->wait();
}

// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/ArchiveParser.h"
#include "store/DataStoreDecoder.h"
#include "tests/support/EncodedStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/SimulatedRunLoop.h"
#include "tests/support/StorePrinter.h"

using namespace values;

namespace {
// Why the store cannot be written; null on success.
QString problemOf(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    const QString problem = DataStoreEncoder::encode(store, device);
    EXPECT_EQ(device.data().isEmpty(), !problem.isNull());
    return problem;
}

class DataStoreArchive : public RegistryTest
{
protected:
    DataStoreArchive() { tree_.plane("DxService", "Root\n  Host\n"); }

    // The store after reading it back.
    std::unique_ptr<TavDataStore> reopened() const
    {
        return DataStoreDecoder::decode(encoded(*store_));
    }

    SimulatedRunLoop loop_;
};
} // namespace

TEST_F(DataStoreArchive, WritesTheKeysOfEachClassInOrder)
{
    service_.setProperties(
        tree_["Host"], dictionary({{"list", array({RegistryValue::boolean(true), array({})})}}));
    capture();
    ParsedArchive table;
    ASSERT_TRUE(ArchiveParser(encoded(*store_), {}).parse(table));
    QByteArrayList shapes;
    for (const ParsedArchive::Shape &shape : table.shapes) {
        QByteArrayList keys;
        for (const ParsedArchive::Key &key : shape.keys)
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

TEST_F(DataStoreArchive, KeepsHowNumbersAreWrittenAndWhereTheKernelShowsAnObject)
{
    using Notation = RegistryValue::Notation;
    service_.setProperties(
        tree_["Host"],
        dictionary({{"decimal", RegistryValue::number(7, 4, true, Notation::Decimal)},
                    {"list", array({RegistryValue::number(7, 1, false, Notation::Hexadecimal)})},
                    {"unknown", number(7)}}));
    service_.setKernelPath(tree_["Host"], QStringLiteral("/sys/devices"));
    capture();
    const auto opened = reopened();
    const TavRegistryEntry &host = *opened->registryEntries().back();
    const RegistryValue &table = host.table();
    EXPECT_EQ(table.member(u"decimal").notation(), Notation::Decimal);
    EXPECT_TRUE(table.member(u"decimal").isSignedNumber());
    EXPECT_EQ(table.member(u"list").elements()[0].notation(), Notation::Hexadecimal);
    EXPECT_EQ(table.member(u"unknown").notation(), Notation::Unknown);
    EXPECT_EQ(host.kernelPath(), QStringLiteral("/sys/devices"));
    EXPECT_TRUE(opened->registryRoot()->kernelPath().isEmpty());
}

TEST_F(DataStoreArchive, LeavesOnlyTheTreesThatAreLookedAt)
{
    service_.setProperties(tree_["Host"], dictionary({{"key", number(1)}}));
    capture();
    const auto opened = reopened();
    const PropertyRef seen = opened->registryRoot()->propertiesRef();
    const TavRegistryEntry &host = *opened->registryEntries().back();
    EXPECT_FALSE(host.hasTree());
    const QByteArray bytes = encoded(*opened);
    EXPECT_FALSE(host.hasTree());
    EXPECT_EQ(opened->registryRoot()->propertiesRef(), seen);
    EXPECT_EQ(StorePrinter::print(*DataStoreDecoder::decode(bytes)), StorePrinter::print(*store_));
}

TEST_F(DataStoreArchive, IsNeverRereadOnceOpened)
{
    capture();
    const auto read = reopened();
    ASSERT_TRUE(read);
    store_.reset();
    const std::string before = StorePrinter::print(*read);
    LogCapture log;
    read->setUpToDate(false);
    read->setAutoupdate(true);
    read->setPolledUpdate(true);
    read->setPollInterval(1);
    EXPECT_EQ(loop_.pendingTimers(), 0U);
    read->setUpToDate(true);
    read->update();
    read->updateObject(*read->registryRoot());
    EXPECT_EQ(log.messages(),
              QStringList{QStringLiteral("Attempt to update a non-live data store\n")});
    EXPECT_EQ(StorePrinter::print(*read), before);
}

TEST_F(DataStoreArchive, KeepsMarksDatesAndWhatIsTerminated)
{
    tree_.plane("DxService", "Root\n  Host\n    going@1 : DxDevice : DxService\n    staying\n")
        .plane("DxBus", "Root\n  Host\n    going@1\n");
    service_.setProperties(tree_["staying"],
                           dictionary({{"gone", array({RegistryValue::boolean(true)})}}));
    capture();
    TavRegistryEntry &going = entry("going@1");
    TavRegistryEntry &staying = entry("staying");
    const PropertyRef older = staying.propertiesRef();
    service_.setProperties(tree_["staying"], dictionary({}));
    store_->updateObject(staying);
    going.noteTerminatedAtDate(QDateTime::fromMSecsSinceEpoch(1234567890123, Qt::UTC), true);
    going.properties()->setRegistryState(RegistryStateChanged);
    const auto read = reopened();
    ASSERT_TRUE(read);
    EXPECT_EQ(StorePrinter::print(*read), StorePrinter::print(*store_));

    ASSERT_TRUE(staying.properties()->noteChangesFromProperty(*older));
    const auto later = reopened();
    ASSERT_TRUE(later);
    const auto *const copy = later->registryEntries().at(3)->properties()->childAtIndex(0);
    ASSERT_TRUE(copy && copy->numberOfChildren() == 1);
    EXPECT_EQ(copy->registryState(), RegistryStateTerminated);
    EXPECT_EQ(copy->childAtIndex(0)->parent(), copy);
}

TEST_F(DataStoreArchive, OpensAStoreWithAnEntryThatLostItsProperties)
{
    capture();
    service_.setFailures(tree_["Host"], FakeRegistry::PropertiesFail);
    store_->update();
    ASSERT_FALSE(entry("Host").properties());
    const auto read = reopened();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->registryEntries().at(1)->properties()->numberOfChildren(), 0);
}

// "below" is below "above", which is below the bus; then they swap places.
class DataStoreArchiveOfTurnedEntries : public DataStoreArchive
{
protected:
    DataStoreArchiveOfTurnedEntries()
    {
        tree_.plane("DxService", "Root\n  Host\n    above : DxDevice : DxService\n      below\n");
        capture();
    }
    void turn()
    {
        service_.unlink(tree_["Host"], tree_["above"], "DxService");
        service_.unlink(tree_["above"], tree_["below"], "DxService");
        service_.link(tree_["Host"], tree_["below"], "DxService");
        service_.link(tree_["below"], tree_["above"], "DxService");
    }
    void expectReopenedTree(const char *text)
    {
        const auto read = reopened();
        ASSERT_TRUE(read);
        EXPECT_EQ(TreePrinter::plane(*read, servicePlane), dedented(text));
        for (std::size_t i = 0; i < read->registryEntries().size(); ++i)
            EXPECT_EQ(read->registryEntries()[i]->registryPathsInPlane(servicePlane),
                      store_->registryEntries()[i]->registryPathsInPlane(servicePlane));
    }
    bool isBelowItself(const char *label)
    {
        return entry(label).allDescendantsInPlane(servicePlane).contains(&entry(label));
    }
};

TEST_F(DataStoreArchiveOfTurnedEntries, OpensWhenTheUpperOneIsTerminated)
{
    store_->setAutoupdate(true);
    service_.terminate(tree_["above"]);
    turn();
    service_.reportChange();
    loop_.advance(1);
    ASSERT_EQ(entry("above").registryState(), RegistryStateTerminated);
    ASSERT_TRUE(isBelowItself("below")) << "no cycle was made";
    expectReopenedTree(R"(
        Root
          Host
            above (terminated)
              below
            below
    )");
}

TEST_F(DataStoreArchiveOfTurnedEntries, OpensWhenOneIsReadAlone)
{
    turn();
    store_->updateObject(entry("below"));
    ASSERT_TRUE(isBelowItself("below")) << "no cycle was made";
    expectReopenedTree(R"(
        Root
          Host
            above
              below
    )");
}

// Each layer has two entries with both entries of the layer above as parents.
TEST_F(DataStoreArchive, IsNotWrittenWithMorePathsThanCanBeRead)
{
    std::vector<Node> above{tree_["Host"]};
    for (int layer = 0; layer < 20; ++layer) {
        const std::vector pair{service_.add(QStringLiteral("DxDevice"), "a"),
                               service_.add(QStringLiteral("DxDevice"), "b")};
        for (const Node parent : above) {
            for (const Node child : pair)
                service_.link(parent, child, "DxService");
        }
        above = pair;
    }
    capture();
    EXPECT_TRUE(problemOf(*store_).contains(QLatin1String("paths")));
}

TEST(DataStoreArchiveOfPlanes, IsNotWrittenWithThoseThatAreRefused)
{
    const auto problemWith = [](int planes, const QByteArray &lastName) {
        FakeRegistryService registry;
        TreeBuilder tree(registry);
        for (int i = 1; i < planes; ++i)
            tree.plane("Plane" + QByteArray::number(i), "Root\n  child");
        tree.plane(lastName, "Root\n  child");
        const auto store = TavDataStore::initFromDxRegistry(registry);
        EXPECT_EQ(store->registryPlanes().size(), planes);
        return problemOf(*store);
    };
    EXPECT_TRUE(problemWith(256, QByteArray(510, 'p')).isNull());
    EXPECT_TRUE(problemWith(257, "last").contains(QLatin1String("too many planes")));
    EXPECT_TRUE(problemWith(1, QByteArray(511, 'p')).contains(QLatin1String("too long")));
}

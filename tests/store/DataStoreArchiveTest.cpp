#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryGenerator.h"
#include "tests/support/SimulatedRunLoop.h"
#include "tests/support/StorePrinter.h"
#include "tests/support/TreeBuilder.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <QBuffer>
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

TEST_F(DataStoreArchive, NeedsNoStackForDeepTreesAndLongChains)
{
    RegistryValue deep = RegistryValue::boolean(true);
    for (int i = 0; i < 2000; ++i)
        deep = RegistryValue::array({deep});
    TreeBuilder tree(registry_);
    tree.plane("DxService", "Root\n  Host\n");
    registry_.setProperties(tree["Host"], deep);
    FakeRegistry::Node last = tree["Host"];
    for (int i = 0; i < 5000; ++i) {
        const auto next = registry_.add(QStringLiteral("DxDevice"), "link");
        registry_.link(last, next, "DxService");
        last = next;
    }
    registry_.publishPlanes();
    const auto store = TavDataStore::initFromDxRegistry(registry_);
    const auto read = reopened(*store);
    ASSERT_TRUE(read);
    EXPECT_EQ(StorePrinter::print(*read), StorePrinter::print(*store));
}

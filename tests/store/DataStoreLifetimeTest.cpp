// SPDX-License-Identifier: Apache-2.0
#include "model/TavRegistryEntryPath.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/StoreLinks.h"

#include <QRandomGenerator>

using namespace values;

// Windows and paths may hold entries and properties longer than the store. Run with the address
// sanitizer.
class DataStoreLifetimeTest : public RegistryTest
{
protected:
    using Notification = NotificationCenter::Notification;

    DataStoreLifetimeTest()
    {
        tree_.plane("DxService", R"(
            Root
              Host
                hub
                  mouse
                  disk
                fan
        )");
        tree_.plane("DxPower", R"(
            Root
              Host
                fan
                  disk
                hub
                  disk
        )");
        service_.setProperties(tree_["disk"], dictionary({{"size", number(1)}}));
        capture();
    }
    NotificationCenter::Observation on(const QString &name, std::function<void()> action)
    {
        return NotificationCenter::defaultCenter().observe(
            name, nullptr, [action = std::move(action)](const Notification &) { action(); });
    }
    void terminate(const char *label)
    {
        entry(label).noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), true);
        service_.remove(tree_[label]);
    }
    // Everything that a view reads of an entry.
    static void ask(TavRegistryEntry &entry)
    {
        const QString plane = QStringLiteral("DxService");
        entry.nameAtLocationInPlane(plane);
        entry.bundlePath();
        entry.allRegistryPaths();
        entry.allEntryPaths();
        entry.getNumRegistryPaths();
        entry.allAncestorsInPlane(plane);
        entry.allDescendantsInPlane(plane);
        entry.readAttributesAndProperties();
        entry.readChildrenInPlane(plane);
        entry.updateIsSingle(true);
        entry.clearTerminatedChildren();
        entry.clearIsNew();
        if (entry.properties())
            TreePrinter::properties(*entry.properties());
    }
};

TEST_F(DataStoreLifetimeTest, EntriesAndPropertiesOutliveTheStore)
{
    std::vector<EntryRef> entries = store_->registryEntries();
    const PropertyRef former = entry("disk").properties()->childAtIndex(0)->ref();
    service_.setProperties(tree_["disk"], dictionary({{"size", number(2)}}));
    store_->update();
    const PropertyRef size = entry("disk").properties()->childAtIndex(0)->ref();
    EXPECT_NE(size, former);
    auto paths = entry("disk").allEntryPaths();
    store_.reset();
    EXPECT_EQ(service_.openHandles(), 0U);
    for (const EntryRef &entry : entries) {
        EXPECT_EQ(entry->dataStore(), nullptr);
        EXPECT_EQ(entry->numParents(), 0U);
        ask(*entry);
    }
    EXPECT_EQ(size->registryEntry()->nameInPlane({}), QStringLiteral("disk"));
    EXPECT_EQ(former->propertyPath(), QStringLiteral("//size"));
    EXPECT_EQ(former->value(), number(1));
    ASSERT_EQ(paths.size(), 3U);
    EXPECT_EQ(paths.front().registryPath(), QStringLiteral("DxService:/hub/disk"));
    EXPECT_EQ(paths.front().lastRegistryEntry()->entryPathsInPlane(servicePlane).size(), 1U);
    entries.clear();
    paths.clear();
    EXPECT_EQ(size->registryEntry(), nullptr);
    EXPECT_EQ(size->value(), number(2));
}

TEST_F(DataStoreLifetimeTest, ClearedEntriesLeaveNoLinksBehind)
{
    // The disk moves away from the hub, and only the hub is reread: the disk still lists it as a
    // parent.
    service_.unlink(tree_["hub"], tree_["disk"], "DxService");
    store_->updateObject(entry("hub"));
    ASSERT_FALSE(entry("disk").parentsInPlane(servicePlane).empty());
    const EntryRef held = entry("hub").shared_from_this();
    terminate("hub");
    store_->clearTerminatedObjects();
    EXPECT_TRUE(entry("disk").parentsInPlane(servicePlane).empty());
    EXPECT_EQ(entry("disk").parentsInPlane(QStringLiteral("DxPower")),
              EntryList::Entries{&entry("fan")});
    EXPECT_TRUE(held->childrenInPlane(servicePlane).empty());
    ask(*held);
    store_->updateObject(*held);
    ask(entry("disk"));
    store_->update();
    EXPECT_EQ(entry("disk").entryPathsInPlane(QStringLiteral("DxPower")).size(), 1U);
}

// At an update or a termination, see the live store.
TEST_F(DataStoreLifetimeTest, AnObserverMayCloseTheStore)
{
    const auto close = [this] { store_.reset(); };
    {
        const auto observation = on(DataStoreNotifications::clearedTerminatedObjects, close);
        terminate("mouse");
        store_->clearTerminatedObjects();
        EXPECT_FALSE(store_);
    }
    capture();
    QString name; // read by an observer called after closing
    const auto first = on(DataStoreNotifications::objectChanged, close);
    const auto second = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::objectChanged, nullptr, [&](const Notification &its) {
            name = static_cast<const TavRegistryEntry *>(its.object)->nameInPlane({});
        });
    store_->updateObject(entry("disk"));
    EXPECT_FALSE(store_);
    EXPECT_EQ(name, QStringLiteral("disk"));
}

TEST_F(DataStoreLifetimeTest, AnObserverMayClearAndUpdateWhileNotified)
{
    int rounds = 0;
    const auto update = on(DataStoreNotifications::changed, [&] {
        store_->clearTerminatedObjects();
        if (++rounds < 3)
            store_->update();
    });
    const EntryRef held = entry("hub").shared_from_this();
    entry("hub").noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), false);
    service_.remove(tree_["hub"]);
    store_->update();
    EXPECT_EQ(rounds, 3);
    EXPECT_EQ(held->dataStore(), nullptr);
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            fan
    )"));
}

// Random changes, updates, terminations and clearings, with entries, paths and properties held
// across them: after an update, the links of live entries agree in both directions.
TEST_F(DataStoreLifetimeTest, LinksAgreeAfterAnyOrderOfEvents)
{
    QRandomGenerator random(20);
    std::vector<Node> nodes{tree_["Host"], tree_["hub"], tree_["fan"], tree_["disk"]};
    std::vector<EntryRef> heldEntries;
    std::vector<PropertyRef> heldProperties;
    std::vector<TavRegistryEntryPath> heldPaths;
    for (int round = 0; round < 3000; ++round) {
        const quint32 which = random.bounded(static_cast<quint32>(nodes.size()));
        const Node node = nodes[which];
        TavRegistryEntry *const entry = find(node);
        const char *const plane = random.bounded(2) ? "DxService" : "DxPower";
        const quint32 event = random.bounded(10);
        if (event < 3) { // a parent comes before its children, so that no cycle arises
            nodes.push_back(service_.add(QStringLiteral("DxDevice"), "device"));
            service_.link(node, nodes.back(), plane);
        } else if (event == 3 && which > 0) {
            service_.unlink(nodes[random.bounded(which)], node, plane);
            service_.link(nodes[random.bounded(which)], node, plane);
        } else if (event == 4 && which > 0) {
            service_.remove(node);
            nodes.erase(nodes.begin() + which);
            if (entry)
                entry->noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), random.bounded(2));
        } else if (event == 5) {
            store_->update();
        } else if (event == 6 && entry) {
            store_->updateObject(*entry);
        } else if (event == 7) {
            store_->clearTerminatedObjects();
        } else if (event == 8 && entry) {
            heldEntries.push_back(entry->shared_from_this());
            heldProperties.push_back(entry->propertiesRef());
            if (const auto path = entry->entryPathInPlane(servicePlane, 0))
                heldPaths.push_back(*path);
        } else if (event == 9 && heldEntries.size() > 20) {
            heldEntries.clear();
            heldPaths.clear();
            heldProperties.clear();
        }
    }
    store_->update();
    store_->clearTerminatedObjects();
    store_->update();
    expectLinksAgree(*store_);
    store_.reset();
    for (const EntryRef &entry : heldEntries)
        ask(*entry);
}

// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

using namespace values;

// Handles of a live store: the top service, and its interest in it twice.
constexpr std::size_t followingHandles = 3;

class DataStoreTest : public RegistryTest
{
protected:
    DataStoreTest()
    {
        tree_.plane("DxService", R"(
            Root
              Host
                hub@1
                  mouse
        )");
        for (const QString &name :
             {DataStoreNotifications::outOfDate, DataStoreNotifications::changed,
              DataStoreNotifications::objectChanged, DataStoreNotifications::objectsTerminated,
              DataStoreNotifications::clearedTerminatedObjects})
            observations_.push_back(NotificationCenter::defaultCenter().observe(
                name, nullptr, [this](const NotificationCenter::Notification &notification) {
                    const bool isStores = notification.object == store_.get();
                    reported_ += notification.name.mid(11).toStdString() +
                                 (isStores ? "\n" : " by another\n");
                    sender_ = notification.object;
                }));
    }
    // What was posted since the last call.
    std::string reported() { return std::exchange(reported_, {}); }
    void unplug(const char *label)
    {
        entry(label).noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), false);
        service_.remove(tree_[label]);
    }

    std::vector<NotificationCenter::Observation> observations_;
    std::string reported_;
    const void *sender_ = nullptr;
};

TEST_F(DataStoreTest, CapturesTheWholeRegistry)
{
    tree_.plane("apart", R"(
        Root
          Host
            mouse
    )");
    tree_.plane("DxClass", R"(
        Root
    )");
    service_.link(tree_["Root"], tree_["Host"], "DxClass");
    service_.publishPlanes();
    service_.setDistinctHandles(true);
    capture();
    EXPECT_EQ(store_->registryPlanes(),
              (QStringList{QStringLiteral("DxService"), QStringLiteral("apart"),
                           QStringLiteral("DxClass")}));
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            hub@1
              mouse
    )"));
    EXPECT_EQ(printed(QStringLiteral("apart")), dedented(R"(
        Root
          Host
            mouse
    )"));
    EXPECT_EQ(store_->registryEntries().size(), 4U);
    EXPECT_TRUE(store_->isUpToDate());
    EXPECT_TRUE(store_->lastUpdateDate().isValid());
    EXPECT_EQ(service_.openHandles(), 4U + followingHandles); // one for each entry
    EXPECT_EQ(service_.preparations(), 1);
    EXPECT_FALSE(entry("mouse").dateDiscovered().isNull());
}

TEST_F(DataStoreTest, ATerminatedEntryStaysInItsPlaceUntilItIsCleared)
{
    capture();
    reported();
    unplug("hub@1");
    EXPECT_TRUE(entry("hub@1").dateTerminated().isNull());
    store_->update();
    EXPECT_EQ(reported(), "changed\nobjects terminated\n");
    EXPECT_FALSE(entry("hub@1").dateTerminated().isNull());
    const std::string withHub = dedented(R"(
        Root
          Host
            hub@1 (terminated)
              mouse
    )");
    EXPECT_EQ(printed(), withHub);
    EXPECT_TRUE(entry("mouse").parentsInPlane(servicePlane).empty());
    store_->updateObject(entry("Host"));
    EXPECT_EQ(printed(), withHub);
    reported();

    store_->clearTerminatedObjects();
    EXPECT_EQ(reported(), "cleared terminated objects\n");
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
    )"));
    store_->clearTerminatedObjects();
    EXPECT_EQ(reported(), "");
    store_->update();
    EXPECT_EQ(reported(), "changed\n");

    // So do terminations that no update has shown yet.
    unplug("Host");
    store_->clearTerminatedObjects();
    EXPECT_EQ(reported(), "cleared terminated objects\n");
    EXPECT_EQ(printed(), "Root\n");
    for (const EntryRef &known : store_->registryEntries())
        EXPECT_FALSE(known->hasTerminationDate()) << qPrintable(known->nameInPlane({}));

    // What returns after that is another entry.
    service_.link(tree_["Root"], tree_["Host"], "DxService");
    store_->update();
    EXPECT_EQ(printed(), "Root\n  Host (new)\n");
}

TEST_F(DataStoreTest, UpdatingOneEntryReadsItAloneAndNamesIt)
{
    capture();
    reported();
    service_.setProperties(tree_["hub@1"], dictionary({{"ports", number(4)}}));
    service_.setProperties(tree_["mouse"], dictionary({{"dpi", number(800)}}));
    service_.link(tree_["hub@1"], service_.add(QStringLiteral("DxDevice"), "disk"), "DxService");
    TavRegistryEntry &hub = entry("hub@1");
    store_->updateObject(hub);
    EXPECT_EQ(reported(), "object changed by another\n");
    EXPECT_EQ(sender_, &hub);
    EXPECT_EQ(service_.preparedObjects(), std::vector<Node>{tree_["hub@1"]});
    EXPECT_EQ(service_.preparations(), 1);
    EXPECT_EQ(TreePrinter::properties(*hub.properties()), "dictionary\n  ports: 4 (4 bytes)\n");
    EXPECT_EQ(entry("mouse").properties()->numberOfChildren(), 0);
    EXPECT_FALSE(hub.dateLastUpdated().isNull());
    EXPECT_EQ(hub.childrenInPlane(servicePlane).size(), 2U);
    store_->update();
    EXPECT_TRUE(hub.dateLastUpdated().isNull());
}

TEST_F(DataStoreTest, FindsAnEntryByAnyHandleOfItsObject)
{
    service_.setDistinctHandles(true);
    for (const bool hasEntryIDs : {true, false}) {
        service_.setHasEntryIDs(hasEntryIDs);
        capture();
        const auto root = RegistryHandle::adopt(service_, service_.rootEntry());
        EXPECT_NE(root.get(), store_->registryRoot()->DxRegistryEntry());
        EXPECT_EQ(store_->registryEntryForDxRegistryEntry(root.get(), true),
                  store_->registryRoot());
        EXPECT_EQ(store_->registryEntryForDxRegistryEntry(0, false), store_->registryRoot());
        const Node stranger = service_.add(QStringLiteral("DxDevice"), "stranger");
        service_.link(tree_["Host"], stranger, "DxService");
        const auto handle = RegistryHandle::adopt(
            service_, service_.entryFromPath(QStringLiteral("DxService:/stranger")));
        ASSERT_TRUE(handle);
        EXPECT_EQ(store_->registryEntryForDxRegistryEntry(handle.get(), false), nullptr);
        EXPECT_NE(store_->registryEntryForDxRegistryEntry(handle.get(), true), nullptr);
        service_.remove(stranger);
        store_.reset();
    }
}

TEST_F(DataStoreTest, ReportsAnUnreachableRegistryWhichMayReturn)
{
    const auto delegate = std::make_shared<CountingDelegate>();
    const Node root = service_.root();
    service_.setRoot(0);
    capture(delegate);
    EXPECT_EQ(delegate->errors, 4); // nothing to follow in two ways, no root, and so no planes
    EXPECT_EQ(store_->registryRoot(), nullptr);
    EXPECT_TRUE(
        store_->entriesMatchingRegistryPath(QStringLiteral("DxService:/")).entries.isEmpty());

    service_.setRoot(root);
    store_->update();
    EXPECT_EQ(delegate->errors, 4);
    EXPECT_EQ(printed(), dedented(R"(
        Root (new)
          Host (new)
            hub@1 (new)
              mouse (new)
    )"));

    // Without its table of planes the registry keeps its planes. The table of the previous reading
    // counts.
    service_.setProperties(root, dictionary({{"DxRegistryPlanes", text("none")}}));
    store_->update();
    EXPECT_EQ(delegate->errors, 4);
    store_->update();
    EXPECT_EQ(delegate->errors, 5);
    EXPECT_EQ(store_->registryPlanes(), QStringList{servicePlane});
    store_->setDelegate(nullptr);
    store_->update();
    EXPECT_EQ(delegate->errors, 5);
}

TEST_F(DataStoreTest, ResolvesPaths)
{
    tree_.plane("DxEmpty", R"(
        Root
    )");
    tree_.plane("Slashed", R"(
        Root
          Host
            mouse
    )");
    service_.setName(tree_["Host"], "/", "Slashed");
    capture();
    struct Row
    {
        const char *path;
        const char *match; // null: none
        const char *plane;
    };
    const Row rows[] = {
        {"", "Root", nullptr},
        {"DxService", "Root", nullptr},
        {"DxService:", "Root", "DxService"},
        {"NoSuchPlane:", "Root", "NoSuchPlane"},
        {"DxService:/", "Host", "DxService"},
        {"DxService:/hub@1/mouse", "mouse", "DxService"},
        {"DxService:/hub", nullptr, nullptr},
        {"DxService:/hub@1/", nullptr, nullptr},
        {"DxService:/Host/hub@1", nullptr, nullptr},
        {"DxService:hub@1", nullptr, nullptr},
        {"DxService://", nullptr, nullptr},
        {"hub@1", nullptr, nullptr},
        {"dxservice", nullptr, nullptr},
        {"NoSuchPlane:/", nullptr, nullptr},
        {"Slashed:/", "Host", "Slashed"},
        {"Slashed:/mouse", "mouse", "Slashed"},
        {":", "Root", ""},
    };
    for (const Row &row : rows) {
        const auto matches = store_->entriesMatchingRegistryPath(QString::fromLatin1(row.path));
        const EntrySet expected = row.match ? EntrySet{&entry(row.match)} : EntrySet();
        EXPECT_EQ(matches.entries, expected) << row.path;
        EXPECT_EQ(matches.plane, QString::fromLatin1(row.plane)) << row.path;
        EXPECT_EQ(matches.plane.isNull(), row.plane == nullptr) << row.path;
    }
}

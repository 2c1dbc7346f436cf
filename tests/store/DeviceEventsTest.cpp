// SPDX-License-Identifier: Apache-2.0
#include "tests/support/DeviceEventsFixture.h"

using namespace DataStoreNotifications;

namespace {
class DeviceEventsTest : public DeviceEventsFixture
{};

TEST_F(DeviceEventsTest, ShowsWhatComesAndGoes)
{
    follow(true);
    device("devices/bus/new");
    ASSERT_TRUE(updatesOn("add", "devices/bus/new"));
    ASSERT_TRUE(at("DxService:/bus/new"));
    EXPECT_EQ(at("DxService:/bus/new")->registryState(), RegistryStateNew);
    EXPECT_EQ(at("DxService:/bus/old")->registryState(), RegistryStateUnchanged);

    remove("devices/bus/new");
    events_.send("remove", "devices/bus/new");
    ASSERT_TRUE(waitFor([&] { return posted_.value(objectsTerminated) == 1; }));
    EXPECT_TRUE(isTerminated("DxService:/bus/new"));
    turnEventLoopFor(400);
    EXPECT_EQ(posted_.value(changed), 1); // a termination brings no update
    ASSERT_TRUE(updatesOn("change", "devices/bus/old"));
    EXPECT_EQ(posted_.value(objectsTerminated), 2); // by the update
    store_->clearTerminatedObjects();
    EXPECT_EQ(StorePrinter::registry(*store_), fresh());
    EXPECT_EQ(posted_.value(outOfDate), 0);
}

TEST_F(DeviceEventsTest, WithoutAutomaticUpdateChangesWaitForOne)
{
    follow(false);
    device("devices/bus/new");
    events_.send("add", "devices/bus/new");
    ASSERT_TRUE(waitFor([&] { return posted_.value(outOfDate) == 1; }));
    EXPECT_FALSE(store_->isUpToDate() || at("DxService:/bus/new"));
    store_->update();
    EXPECT_TRUE(store_->isUpToDate() && at("DxService:/bus/new"));
    remove("devices/bus/old");
    store_->update(); // before its event
    EXPECT_TRUE(store_->isUpToDate());
    EXPECT_TRUE(isTerminated("DxService:/bus/old"));
    events_.send("remove", "devices/bus/old");
    turnEventLoopFor(50);
    EXPECT_TRUE(store_->isUpToDate()); // reported before
}

TEST_F(DeviceEventsTest, OddEventsDoNoHarm)
{
    follow(true);
    for (const char *path : {"devices/never", "devices/bus/old/driver", "module/none", "devices",
                             "class", "devices/bus/old/deep/er"}) {
        for (const char *action : {"remove", "unbind", "add", "bind", "change", "remove"})
            events_.send(action, path);
    }
    ASSERT_TRUE(waitForUpdate());
    EXPECT_EQ(StorePrinter::registry(*store_), fresh());

    device("devices/bus/quick");
    remove("devices/bus/quick"); // came and went before anything was read
    events_.send("remove", "devices/bus/quick");
    events_.send("add", "devices/bus/quick");
    const auto first = at("DxService:/bus/old")->entryTag();
    remove("devices/bus/old");
    device("devices/bus/old"); // another one by the same name
    for (const char *action : {"remove", "remove", "add", "add"})
        events_.send(action, "devices/bus/old");
    ASSERT_TRUE(waitForUpdate());
    const auto &children = at("DxService:/bus")->childrenInPlane(QStringLiteral("DxService"));
    ASSERT_EQ(children.size(), 2U);
    for (const TavRegistryEntry *child : children)
        EXPECT_EQ(child->registryState(),
                  child->entryTag() == first ? RegistryStateTerminated : RegistryStateNew);
    store_->clearTerminatedObjects();
    store_->update();
    EXPECT_EQ(StorePrinter::registry(*store_), fresh());
}

struct Journey
{
    bool isReported;       // by events
    bool isUpdatedBetween; // while it is away
};

class ReturningDeviceTest : public DeviceEventsFixture, public testing::WithParamInterface<Journey>
{};

TEST_P(ReturningDeviceTest, IsANewObjectInEveryStore)
{
    device(wanderer);
    const auto liveTag = [](const TavDataStore &store) {
        for (const EntryRef &entry : store.registryEntries()) {
            if (entry->nameInPlane({}) == QLatin1String("wanderer") && entry->DxRegistryEntry())
                return entry->entryTag();
        }
        return quint64(0);
    };
    for (const bool automatically : {true, false}) {
        follow(automatically);
        const auto other = TavDataStore::initFromDxRegistry(*service_);
        QSet<quint64> tags{liveTag(*store_)};
        for (int i = 0; i < 2; ++i) {
            leave();
            if (GetParam().isReported)
                events_.send("remove", wanderer);
            turnEventLoopFor(30);
            if (GetParam().isUpdatedBetween)
                store_->update();
            EXPECT_EQ(liveTag(*store_), 0U);
            comeBack();
            if (GetParam().isReported)
                events_.send("add", wanderer);
            turnEventLoopFor(30);
            for (int updates = 0; updates < 2; ++updates) {
                store_->update();
                other->update();
                const quint64 tag = liveTag(*store_);
                EXPECT_EQ(tags.contains(tag), updates > 0) << tag;
                EXPECT_EQ(liveTag(*other), tag);
                tags.insert(tag);
            }
        }
        store_->clearTerminatedObjects();
        other->clearTerminatedObjects();
        EXPECT_EQ(StorePrinter::registry(*store_), StorePrinter::registry(*other));
        observations_.clear();
        store_.reset();
    }
}

INSTANTIATE_TEST_SUITE_P(Journeys, ReturningDeviceTest,
                         testing::Values(Journey{true, true}, Journey{true, false},
                                         Journey{false, true}),
                         [](const auto &its) {
                             return std::string(its.param.isReported ? "Reported" : "Unreported") +
                                    (its.param.isUpdatedBetween ? "AndUpdated" : "");
                         });

TEST_F(DeviceEventsTest, RemovalIsBelievedWhenTheObjectIsGone)
{
    follow(true);
    events_.send("remove", "devices/bus/old"); // of an earlier one
    turnEventLoopFor(500);
    EXPECT_EQ(posted_.value(objectsTerminated), 0);
    events_.send("remove", "devices/bus/old"); // reported a little early
    turnEventLoopFor(30);
    EXPECT_FALSE(isTerminated("DxService:/bus/old"));
    remove("devices/bus/old");
    EXPECT_TRUE(waitFor([&] { return isTerminated("DxService:/bus/old"); }));
}

TEST_F(DeviceEventsTest, DriverComesAndGoesWhileItsDeviceStays)
{
    made_.folder("bus/made/drivers/driver");
    made_.folder("bus/made/devices");
    follow(true);
    made_.link("devices/bus/old/driver", "../../../bus/made/drivers/driver");
    ASSERT_TRUE(updatesOn("bind", "devices/bus/old"));
    ASSERT_TRUE(at("DxService:/bus/old/driver"));
    EXPECT_EQ(at("DxService:/bus/old/driver")->registryState(), RegistryStateNew);
    EXPECT_TRUE(at("DxService:/bus/old")->isMatched());
    remove("devices/bus/old/driver");
    events_.send("unbind", "devices/bus/old");
    ASSERT_TRUE(waitFor([&] { return isTerminated("DxService:/bus/old/driver"); }));
    ASSERT_TRUE(waitForUpdate());
    EXPECT_FALSE(at("DxService:/bus/old")->isMatched());
    EXPECT_EQ(at("DxService:/bus/old")->registryState(), RegistryStateUnchanged);
}

TEST_F(DeviceEventsTest, LossIsMadeGoodByLookingAtEverything)
{
    device("module/lost");
    device("module/kept");
    follow(false);
    remove("devices/bus/old");
    remove("module/lost");
    device("devices/bus/new");
    for (int i = 0; i < 50; ++i)
        events_.lose();
    ASSERT_TRUE(waitFor([&] { return at("DxService:/bus/old")->DxRegistryEntry() == 0; }));
    turnEventLoopFor(300);
    EXPECT_EQ(posted_.value(outOfDate), 2); // the terminations and one change
    store_->update();
    EXPECT_TRUE(isTerminated("DxService:/bus/old"));
    EXPECT_TRUE(isTerminated("DxModule:/lost")); // no service, but gone all the same
    EXPECT_TRUE(at("DxService:/bus/new"));

    store_->setAutoupdate(true);
    device("devices/bus/newer");
    events_.lose();
    ASSERT_TRUE(waitForUpdate());
    EXPECT_TRUE(at("DxService:/bus/newer"));
}

TEST_F(DeviceEventsTest, BusyHostIsReportedWhenItStartsAndEnds)
{
    follow(true);
    made_.file("devices/bus/old/power/runtime_status", "resuming\n");
    ASSERT_TRUE(updatesOn("change", "devices/bus/old"));
    EXPECT_EQ(at("DxService:/")->busyCount(), 1U);
    made_.file("devices/bus/old/power/runtime_status", "active\n");
    QElapsedTimer time; // without an event
    time.start();
    ASSERT_TRUE(waitForUpdate());
    EXPECT_GE(time.elapsed(), 1000);
    EXPECT_EQ(at("DxService:/")->busyCount(), 0U);
    ASSERT_TRUE(waitForUpdate()); // quiet again
    turnEventLoopFor(400);
    EXPECT_EQ(posted_.value(changed), 3);
}

TEST_F(DeviceEventsTest, BusyObjectThatIsReadAloneMakesThoseAboveBusy)
{
    device("devices/bus/other");
    follow(false);
    const auto busyCounts = [this](const char *status) {
        made_.file("devices/bus/old/power/runtime_status", status);
        store_->updateObject(*at("DxService:/bus/old"));
        std::vector<quint32> counts;
        for (const char *path : {"DxService:/", "DxService:/bus", "DxService:/bus/old"}) {
            at(path)->updateIsSingle(true);
            counts.push_back(at(path)->busyCount());
        }
        return counts;
    };
    const std::vector<quint32> busy{1, 1, 1};
    const std::vector<quint32> quiet{0, 0, 0};
    EXPECT_EQ(busyCounts("resuming\n"), busy);
    ASSERT_TRUE(waitFor([&] { return posted_.value(outOfDate) == 1; }));
    EXPECT_EQ(busyCounts("suspending\n"), busy);
    EXPECT_EQ(busyCounts("active\n"), quiet);
    ASSERT_TRUE(waitFor([&] { return posted_.value(outOfDate) == 2; }));
    store_->update();
    EXPECT_EQ(at("DxService:/")->busyCount(), 0U);
}
} // namespace

#include "model/linux/LinuxRegistryService.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "store/TavDataStore.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"
#include "tests/support/RegistryText.h"
#include "tests/support/ScriptedEvents.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <random>

namespace {
const QString outOfDate = QStringLiteral("Data store out of date");
const QString changed = QStringLiteral("Data store changed");
const QString terminated = QStringLiteral("Data store objects terminated");

// A tree whose devices come and go by the test, and a store that follows it by events.
class DeviceEventsTest : public testing::Test
{
protected:
    DeviceEventsTest()
    {
        device("devices/bus");
        device("devices/bus/old");
        trash_.folder("devices");
    }
    ~DeviceEventsTest() override
    {
        observations_.clear();
        store_.reset();
        EXPECT_FALSE(events_.isOpen());
    }

    void follow(bool automatically)
    {
        QString error;
        service_ = LinuxRegistryService::create(made_.sys(), &error);
        service_->setEventSourceFactory([this] { return events_.open(); });
        store_ = TavDataStore::initFromDxRegistry(*service_);
        store_->setAutoupdate(automatically);
        ASSERT_TRUE(events_.isOpen());
        for (const QString &name : {outOfDate, changed, terminated})
            observations_.push_back(NotificationCenter::defaultCenter().observe(
                name, store_.get(), [this](const auto &its) { ++posted_[its.name]; }));
    }
    void device(const QByteArray &path)
    {
        made_.file((path + "/uevent").constData(), "NUMBER=" + QByteArray::number(++number_));
    }
    // Kept elsewhere, so that its inode number is not given out again.
    void remove(const QByteArray &path)
    {
        const QByteArray grave = trash_.path("devices/") + QByteArray::number(++number_);
        ASSERT_EQ(rename(made_.path(path.constData()).constData(), grave.constData()), 0);
    }
    TavRegistryEntry *at(const char *path) const
    {
        const EntrySet found = store_->entriesMatchingRegistryPath(QString::fromUtf8(path)).entries;
        return found.size() == 1 ? found.values().constFirst() : nullptr;
    }
    bool isTerminated(const char *path) const
    {
        const TavRegistryEntry *const entry = at(path);
        return entry && entry->registryState() == RegistryStateTerminated;
    }
    bool waitForUpdate()
    {
        const int before = posted_.value(changed);
        return waitFor([&] { return posted_.value(changed) > before; });
    }
    std::string fresh() const
    {
        QString error;
        const auto service = LinuxRegistryService::create(made_.sys(), &error);
        return RegistryText::whole(*TavDataStore::initFromDxRegistry(*service));
    }

    MadeTree made_;
    MadeTree trash_;
    int number_ = 0;
    ScriptedEvents events_;
    std::unique_ptr<LinuxRegistryService> service_;
    std::unique_ptr<TavDataStore> store_;
    QHash<QString, int> posted_;
    std::vector<NotificationCenter::Observation> observations_;
};

TEST_F(DeviceEventsTest, ShowsWhatComesAndGoes)
{
    follow(true);
    device("devices/bus/new");
    events_.tell("add", "devices/bus/new");
    ASSERT_TRUE(waitForUpdate());
    ASSERT_TRUE(at("DxService:/bus/new"));
    EXPECT_EQ(at("DxService:/bus/new")->registryState(), RegistryStateNew);
    EXPECT_EQ(at("DxService:/bus/old")->registryState(), RegistryStateUnchanged);

    remove("devices/bus/new");
    events_.tell("remove", "devices/bus/new");
    ASSERT_TRUE(waitFor([&] { return posted_.value(terminated) == 1; }));
    EXPECT_TRUE(isTerminated("DxService:/bus/new"));
    turnEventLoopFor(400);
    EXPECT_EQ(posted_.value(changed), 1); // a termination brings no update
    events_.tell("change", "devices/bus/old");
    ASSERT_TRUE(waitForUpdate());
    EXPECT_EQ(posted_.value(terminated), 2); // by the update
    store_->clearTerminatedObjects();
    EXPECT_EQ(RegistryText::whole(*store_), fresh());
    EXPECT_EQ(posted_.value(outOfDate), 0);
}

TEST_F(DeviceEventsTest, WithoutAutomaticUpdateChangesWaitForOne)
{
    follow(false);
    device("devices/bus/new");
    events_.tell("add", "devices/bus/new");
    ASSERT_TRUE(waitFor([&] { return posted_.value(outOfDate) == 1; }));
    EXPECT_FALSE(store_->isUpToDate() || at("DxService:/bus/new"));
    store_->update();
    EXPECT_TRUE(store_->isUpToDate() && at("DxService:/bus/new"));
    remove("devices/bus/old");
    store_->update(); // before its event
    EXPECT_TRUE(store_->isUpToDate());
    EXPECT_TRUE(isTerminated("DxService:/bus/old"));
    events_.tell("remove", "devices/bus/old");
    turnEventLoopFor(50);
    EXPECT_TRUE(store_->isUpToDate()); // told before
}

TEST_F(DeviceEventsTest, OddEventsDoNoHarm)
{
    follow(true);
    for (const char *path : {"devices/never", "devices/bus/old/driver", "module/none", "devices",
                             "class", "devices/bus/old/deep/er"}) {
        for (const char *action : {"remove", "unbind", "add", "bind", "change", "remove"})
            events_.tell(action, path);
    }
    ASSERT_TRUE(waitForUpdate());
    EXPECT_EQ(RegistryText::whole(*store_), fresh());

    device("devices/bus/quick");
    remove("devices/bus/quick"); // came and went before anything was read
    events_.tell("remove", "devices/bus/quick");
    events_.tell("add", "devices/bus/quick");
    const auto first = at("DxService:/bus/old")->entryTag();
    remove("devices/bus/old");
    device("devices/bus/old"); // another one by the same name
    for (const char *action : {"remove", "remove", "add", "add"})
        events_.tell(action, "devices/bus/old");
    ASSERT_TRUE(waitForUpdate());
    const auto &children = at("DxService:/bus")->childrenInPlane(QStringLiteral("DxService"));
    ASSERT_EQ(children.size(), 2U);
    for (const TavRegistryEntry *child : children)
        EXPECT_EQ(child->registryState(),
                  child->entryTag() == first ? RegistryStateTerminated : RegistryStateNew);
    store_->clearTerminatedObjects();
    store_->update();
    EXPECT_EQ(RegistryText::whole(*store_), fresh());
}

TEST_F(DeviceEventsTest, RemovalIsBelievedWhenTheObjectIsGone)
{
    follow(true);
    events_.tell("remove", "devices/bus/old"); // of a former one
    turnEventLoopFor(500);
    EXPECT_EQ(posted_.value(terminated), 0);
    events_.tell("remove", "devices/bus/old"); // told a little early
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
    events_.tell("bind", "devices/bus/old");
    ASSERT_TRUE(waitForUpdate());
    ASSERT_TRUE(at("DxService:/bus/old/driver"));
    EXPECT_EQ(at("DxService:/bus/old/driver")->registryState(), RegistryStateNew);
    EXPECT_TRUE(at("DxService:/bus/old")->isMatched());
    remove("devices/bus/old/driver");
    events_.tell("unbind", "devices/bus/old");
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

TEST_F(DeviceEventsTest, BusyHostIsToldWhenItBecomesSoAndWhenItCeases)
{
    follow(true);
    made_.file("devices/bus/old/power/runtime_status", "resuming\n");
    events_.tell("change", "devices/bus/old");
    ASSERT_TRUE(waitForUpdate());
    EXPECT_EQ(at("DxService:/")->busyCount(), 1U);
    made_.file("devices/bus/old/power/runtime_status", "active\n");
    QElapsedTimer time; // no event tells of it
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

TEST_F(DeviceEventsTest, ReadingsAreInOrderAndNoneIsOlderThanItsRequest)
{
    follow(false);
    std::string order;
    service_->prepareAsync([&] { order += '1'; });
    device("devices/bus/new");
    service_->prepareAsync([&] { order += '2'; });
    service_->prepareAsync([&] { order += '3'; });
    EXPECT_EQ(order, "");
    ASSERT_TRUE(waitFor([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "123");
    EXPECT_TRUE(service_->entryFromPath(QStringLiteral("DxService:/bus/new")));

    service_->prepareAsync([&] { order += '4'; });
    service_->prepareAsync([&] { order += '5'; });
    store_->update(); // overtakes them
    EXPECT_TRUE(at("DxService:/bus/new"));
    EXPECT_EQ(order, "123");
    ASSERT_TRUE(waitFor([&] { return order.size() == 5; }));
    EXPECT_EQ(order, "12345");

    RunLoop::main().setModeTest([] { return false; });
    service_->prepareAsync([&] { order += '6'; });
    turnEventLoopFor(200);
    EXPECT_EQ(order.size(), 5U);
    RunLoop::main().setModeTest(nullptr);
    RunLoop::main().noteModeChange();
    EXPECT_EQ(order.size(), 6U);
}

TEST_F(DeviceEventsTest, StoreAndServiceMayGoWhileTheServiceReads)
{
    for (int i = 0; i < 300; ++i)
        device("devices/bus/" + QByteArray::number(i));
    follow(true);
    for (int i = 0; i < 4; ++i) {
        service_->prepareAsync([] { FAIL(); });
        usleep(static_cast<useconds_t>(i) * 4000);
        observations_.clear();
        store_.reset();
        QElapsedTimer time;
        time.start();
        service_.reset();
        EXPECT_LT(time.elapsed(), 2000);
        turnEventLoopFor(5);
        follow(true);
    }
}

// A device that a sweep has seen, and that goes before the sweep is over.
TEST_F(DeviceEventsTest, RemovalDuringASweepIsNotMissed)
{
    for (int i = 0; i < 300; ++i)
        device("devices/bus/" + QByteArray::number(i));
    follow(false);
    for (int round = 0; round < 10; ++round) {
        device("devices/bus/brief");
        bool isReady = false;
        service_->prepareAsync([&] { isReady = true; });
        usleep(static_cast<useconds_t>(round) * 1000);
        remove("devices/bus/brief");
        events_.tell("remove", "devices/bus/brief");
        ASSERT_TRUE(waitFor([&] { return isReady; }));
        turnEventLoopFor(5);
        const RegistryObject brief =
            service_->entryFromPath(QStringLiteral("DxService:/bus/brief"));
        RegistryIterator children = 0;
        const RegistryObject bus = service_->entryFromPath(QStringLiteral("DxService:/bus"));
        ASSERT_EQ(service_->childIterator(bus, "DxService", children), RegistryStatus::Success);
        int count = 0;
        while (const RegistryObject child = service_->iteratorNext(children)) {
            ++count;
            service_->release(child);
        }
        EXPECT_EQ(count, 301) << round; // and not the one that went
        service_->releaseIterator(children);
        service_->release(bus);
        service_->release(brief);
    }
}

// Random comings and goings, told, told twice, told late or lost.
TEST_F(DeviceEventsTest, StormEndsAsAFreshCapture)
{
    follow(true);
    std::mt19937 random(1);
    std::vector<QByteArray> present;
    const auto storm = [&](int events) {
        for (int i = 0; i < events; ++i) {
            const bool adds = present.size() < 20 || (present.size() < 150 && random() % 5 < 3);
            QByteArray path;
            if (adds) {
                path = present.empty() || random() % 3 ? "devices/bus"
                                                       : present[random() % present.size()];
                path = path.left(200) + "/n" + QByteArray::number(++number_);
                device(path);
                present.push_back(path);
            } else {
                path = present[random() % present.size()];
                remove(path);
                std::erase_if(present, [&](const QByteArray &other) {
                    return other == path || other.startsWith(path + '/');
                });
            }
            switch (random() % 8) {
            case 0:
                events_.lose();
                break;
            case 1:
                events_.tell("change", path);
                [[fallthrough]];
            default:
                events_.tell(adds ? "add" : "remove", path);
            }
            if (random() % 100 == 0)
                turnEventLoopFor(static_cast<int>(random() % 150));
        }
    };
    const auto settle = [&] {
        events_.tell("change", "devices/bus");
        ASSERT_TRUE(waitForUpdate());
        store_->update(); // clears the marks of what is new
        store_->clearTerminatedObjects();
    };
    storm(200);
    settle();
    const auto before = mallinfo2().uordblks;
    const std::size_t entriesBefore = store_->registryEntries().size();
    const std::vector<QByteArray> kept = present;
    storm(2000);
    settle();
    EXPECT_EQ(RegistryText::whole(*store_), fresh());
    EXPECT_GT(posted_.value(terminated), 0);

    while (present.size() > kept.size()) {
        remove(present.back());
        present.pop_back();
    }
    settle();
    EXPECT_EQ(RegistryText::whole(*store_), fresh());
    const auto after = mallinfo2().uordblks;
    const auto entries = std::max(entriesBefore, store_->registryEntries().size());
    EXPECT_LT(after, before + before / 4 + entries * 1000) << "grew from " << before;
}
} // namespace

#include "platform/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/SimulatedRunLoop.h"
#include "tests/support/TreeBuilder.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <gtest/gtest.h>
#include <limits>

namespace {
using Names = QStringList;

const QString plane = QStringLiteral("DxService");
const QString outOfDate = QStringLiteral("Data store out of date");
const QString changed = QStringLiteral("Data store changed");
const QString terminated = QStringLiteral("Data store objects terminated");

class Delegate : public TavDataStoreDelegate
{
public:
    void fatalDxRegistryError() override { ++errors; }
    int errors = 0;
};

class LiveUpdateTest : public testing::Test
{
protected:
    LiveUpdateTest()
    {
        tree_.plane("DxService", R"(
            Root : DxRoot
              Host : DxHost : DxService
                bus : DxDevice : DxService
        )");
        service_.publishPlanes();
        capture();
    }
    ~LiveUpdateTest() override
    {
        observation_ = {};
        store_.reset();
        EXPECT_EQ(loop_.pendingTimers(), 0U);
        EXPECT_EQ(service_.openHandles(), 0U);
        EXPECT_EQ(service_.openIterators(), 0U);
        EXPECT_EQ(service_.misuses(), 0U);
        EXPECT_EQ(service_.powerRegistrations(), 0U);
    }

    void capture()
    {
        store_ = TavDataStore::initFromDxRegistry(service_, delegate_);
        posted_.clear();
        observation_ = {};
        for (const QString &name : {outOfDate, changed, terminated})
            observation_.push_back(NotificationCenter::defaultCenter().observe(
                name, store_.get(), [this](const auto &its) { posted_.append(its.name); }));
    }
    FakeRegistry::Node addDevice(const char *name)
    {
        tree_.plane("DxService", (QByteArray("Root\n  Host\n    bus\n      ") + name +
                                  " : DxDevice : DxService\n")
                                     .constData());
        return tree_[name];
    }
    Names posted() { return std::exchange(posted_, {}); }
    TavRegistryEntry *find(FakeRegistry::Node node)
    {
        const RegistryObject root = service_.rootEntry(); // so that the look-up is allowed
        TavRegistryEntry *found = nullptr;
        for (const EntryRef &entry : store_->registryEntries()) {
            if (entry->entryTag() == node)
                found = entry.get();
        }
        service_.release(root);
        return found;
    }

    SimulatedRunLoop loop_;
    FakeLiveService service_;
    TreeBuilder tree_{service_};
    std::shared_ptr<Delegate> delegate_ = std::make_shared<Delegate>();
    std::unique_ptr<TavDataStore> store_;
    Names posted_;
    std::vector<NotificationCenter::Observation> observation_;
};

TEST_F(LiveUpdateTest, BurstBringsOneUpdateAQuarterSecondAfterItsLastEvent)
{
    store_->setAutoupdate(true);
    EXPECT_EQ(loop_.pendingTimers(), 0U); // up to date: nothing to do
    for (const char *name : {"a", "b", "c"}) {
        service_.publish(addDevice(name));
        loop_.advance(0.2);
    }
    EXPECT_EQ(posted(), Names());
    EXPECT_TRUE(store_->isUpToDate());
    loop_.advance(0.049);
    EXPECT_EQ(posted(), Names());
    loop_.advance(0.001);
    EXPECT_EQ(posted(), Names{changed});
    EXPECT_EQ(TreePrinter::plane(*store_, plane), dedented(R"(
        Root
          Host
            bus
              a (new)
              b (new)
              c (new)
    )"));
    loop_.advance(10);
    EXPECT_EQ(posted(), Names());
    service_.match(tree_["a"]);
    loop_.advance(0.25);
    service_.tellOfChange();
    loop_.advance(0.25);
    EXPECT_EQ(posted(), (Names{changed, changed}));
    EXPECT_EQ(find(tree_["a"])->registryState(), RegistryStateUnchanged);
}

TEST_F(LiveUpdateTest, BusyRegistryIsReadLaterAndAQuietOneStillSoon)
{
    store_->setAutoupdate(true);
    service_.tellBusy(3);
    loop_.advance(1.0);
    service_.tellBusy(3); // replaces the busy timer
    loop_.advance(1.499);
    EXPECT_EQ(posted(), Names());
    loop_.advance(0.001);
    EXPECT_EQ(posted(), Names{changed});

    service_.tellBusy(1);
    loop_.advance(1.4);
    service_.tellBusy(0); // a quiet change replaces it
    loop_.advance(0.249);
    EXPECT_EQ(posted(), Names());
    loop_.advance(10);
    EXPECT_EQ(posted(), Names{changed});

    service_.tellOfChange();
    service_.tellBusy(1); // leaves the quiet timer running
    loop_.advance(0.25);
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(1.25);
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(10);
    EXPECT_EQ(posted(), Names());
}

TEST_F(LiveUpdateTest, WithoutAutomaticUpdateChangesAreOnlyTold)
{
    service_.publish(addDevice("a"));
    EXPECT_FALSE(store_->isUpToDate());
    service_.tellBusy(1);
    service_.tellOfChange();
    EXPECT_EQ(posted(), (Names{outOfDate, outOfDate, outOfDate}));
    EXPECT_EQ(loop_.pendingTimers(), 0U);
    EXPECT_FALSE(find(tree_["a"]));

    store_->setAutoupdate(false); // out of date: told again
    EXPECT_EQ(posted(), Names{outOfDate});
    store_->setAutoupdate(true);
    loop_.advance(0.25);
    EXPECT_EQ(posted(), Names{changed});
    EXPECT_TRUE(store_->isUpToDate());

    service_.tellOfChange();
    service_.tellBusy(1);
    store_->setAutoupdate(false);
    EXPECT_EQ(loop_.pendingTimers(), 0U);
    EXPECT_EQ(posted(), Names());
}

TEST_F(LiveUpdateTest, TerminationShowsAtOnceOrAtTheNextUpdate)
{
    const auto a = addDevice("a");
    const auto b = addDevice("b");
    store_->update();
    store_->setAutoupdate(true);
    posted();

    service_.terminate(a);
    EXPECT_EQ(posted(), Names{terminated});
    EXPECT_EQ(find(a)->registryState(), RegistryStateTerminated);
    EXPECT_FALSE(find(a)->dateTerminated().isNull());
    EXPECT_EQ(find(a)->DxRegistryEntry(), 0U);
    EXPECT_EQ(loop_.pendingTimers(), 0U); // schedules nothing itself

    store_->setAutoupdate(false);
    service_.terminate(b);
    EXPECT_EQ(posted(), Names{outOfDate});
    EXPECT_FALSE(store_->isUpToDate());
    EXPECT_EQ(find(b)->registryState(), RegistryStateNew);
    EXPECT_TRUE(find(b)->dateTerminated().isNull());
    store_->update();
    EXPECT_EQ(posted(), (Names{changed, terminated}));
    EXPECT_EQ(TreePrinter::plane(*store_, plane), dedented(R"(
        Root
          Host
            bus
              a (terminated)
              b (terminated)
    )"));
    store_->clearTerminatedObjects();
    EXPECT_FALSE(find(a) || find(b));
    EXPECT_TRUE(find(tree_["bus"])->childrenInPlane(plane).empty());

    const auto never = addDevice("never");
    posted();
    service_.terminate(never);
    EXPECT_EQ(posted(), Names{outOfDate});
    store_->setAutoupdate(true);
    loop_.advance(1);
    posted();
    service_.terminate(never);
    EXPECT_EQ(posted(), Names());
}

TEST_F(LiveUpdateTest, NothingIsReadBetweenSleepAndWake)
{
    store_->setAutoupdate(true);
    store_->setPolledUpdate(true);
    store_->setPollInterval(10);
    service_.tellPower(CanSystemSleep, 1);
    service_.tellPower(0xe0000340, 2); // of no concern
    EXPECT_EQ(service_.allowedPowerChanges(), std::vector<quintptr>{1});
    service_.tellOfChange(); // its timer is pending when sleep begins
    service_.tellPower(SystemWillSleep, 3);
    EXPECT_EQ(service_.allowedPowerChanges(), (std::vector<quintptr>{1, 3}));
    service_.publish(addDevice("a"));
    loop_.advance(35);
    EXPECT_EQ(posted(), Names());
    EXPECT_EQ(service_.preparations(), 1);

    service_.tellPower(SystemHasPoweredOn, 0);
    loop_.advance(0.249);
    EXPECT_EQ(posted(), Names());
    loop_.advance(0.001);
    EXPECT_EQ(posted(), Names{changed});
    EXPECT_TRUE(find(tree_["a"]));
    loop_.advance(5); // polls went on being timed: the fourth is due at 40
    EXPECT_EQ(posted(), Names{changed});

    store_->setAutoupdate(false);
    service_.tellPower(SystemWillSleep, 4);
    service_.tellOfChange();
    EXPECT_EQ(posted(), Names{outOfDate});
    service_.tellPower(SystemHasPoweredOn, 0);
    EXPECT_EQ(posted(), Names{outOfDate});
    EXPECT_EQ(service_.allowedPowerChanges(), (std::vector<quintptr>{1, 3, 4}));
}

TEST_F(LiveUpdateTest, PollsAtItsInterval)
{
    EXPECT_EQ(store_->pollInterval(), 30.0);
    for (const double refused : {0.0, -1.0, 3600.5, std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity()}) {
        store_->setPollInterval(refused);
        EXPECT_EQ(store_->pollInterval(), 30.0) << refused;
    }
    store_->setPolledUpdate(true);
    loop_.advance(29.9);
    EXPECT_EQ(posted(), Names());
    loop_.advance(30.1);
    EXPECT_EQ(posted(), (Names{changed, changed}));
    loop_.advance(20);
    store_->setPollInterval(3600.0); // begins anew
    loop_.advance(3599);
    EXPECT_EQ(posted(), Names());
    loop_.advance(1);
    EXPECT_EQ(posted(), Names{changed});

    store_->setPollInterval(5);
    service_.setHoldsPreparations(true);
    loop_.advance(5);
    loop_.advance(60); // the reading takes its time
    EXPECT_EQ(service_.heldPreparations(), 1U);
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(4.9);
    EXPECT_EQ(service_.heldPreparations(), 0U); // the period is from the end of the update
    loop_.advance(0.1);
    EXPECT_EQ(service_.heldPreparations(), 1U);
    service_.finishPreparations();
    store_->setPolledUpdate(false);
    EXPECT_EQ(loop_.pendingTimers(), 0U);
}

TEST_F(LiveUpdateTest, HoldsBackOutsideTheDefaultMode)
{
    store_->setAutoupdate(true);
    service_.tellOfChange();
    loop_.setIsInDefaultMode(false);
    service_.terminate(tree_["bus"]);
    service_.tellPower(CanSystemSleep, 1);
    loop_.advance(100);
    EXPECT_EQ(posted(), Names());
    EXPECT_TRUE(service_.allowedPowerChanges().empty());
    loop_.setIsInDefaultMode(true);
    EXPECT_EQ(posted(), (Names{terminated, changed, terminated}));
    EXPECT_EQ(service_.allowedPowerChanges(), std::vector<quintptr>{1});
}

TEST_F(LiveUpdateTest, ChangeDuringAReadingLeadsToAnotherUpdate)
{
    service_.setHoldsPreparations(true);
    store_->setAutoupdate(true);
    service_.tellOfChange();
    loop_.advance(0.25);
    ASSERT_EQ(service_.heldPreparations(), 1U);
    service_.tellOfChange();
    EXPECT_EQ(posted(), Names());
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(0.25);
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(10);
    EXPECT_EQ(service_.heldPreparations(), 0U);

    // A reading so long that the next is asked for before it ends.
    service_.tellOfChange();
    loop_.advance(0.25);
    service_.tellOfChange();
    loop_.advance(0.25);
    ASSERT_EQ(service_.heldPreparations(), 2U);
    service_.finishPreparations();
    EXPECT_EQ(posted(), (Names{changed, changed}));

    // Without automatic update, what a poll may have passed stays told.
    store_->setAutoupdate(false);
    store_->setPolledUpdate(true);
    loop_.advance(30);
    service_.tellOfChange();
    EXPECT_EQ(posted(), Names{outOfDate});
    service_.finishPreparations();
    EXPECT_EQ(posted(), (Names{changed, outOfDate}));
    EXPECT_FALSE(store_->isUpToDate());

    // An update by hand has read later than the poll began to.
    loop_.advance(30);
    store_->update();
    EXPECT_EQ(posted(), Names{changed});
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names());
    EXPECT_TRUE(store_->isUpToDate());
    EXPECT_EQ(loop_.pendingTimers(), 1U);

    // Sleep begins while the service reads.
    loop_.advance(30);
    service_.tellPower(SystemWillSleep, 1);
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names());
}

TEST_F(LiveUpdateTest, FailedRegistrationsAreToldAndTheStoreGoesOn)
{
    using Refused = FakeLiveService::Refused;
    EXPECT_EQ(delegate_->errors, 0);
    for (const auto &[refused, errors] :
         {std::pair{Refused::Ports, 7}, std::pair{Refused::Messages, 1},
          std::pair{Refused::Matching, 3}, std::pair{Refused::Interest, 2},
          std::pair{Refused::Power, 1}}) {
        delegate_->errors = 0;
        service_.setRefused(refused);
        capture();
        EXPECT_EQ(delegate_->errors, errors);
        EXPECT_TRUE(find(tree_["bus"]));
        store_->setAutoupdate(true);
        store_->update();
        EXPECT_EQ(posted(), Names{changed});
    }
    service_.setRefused(Refused::Interest);
    capture();
    store_->setAutoupdate(true);
    service_.publish(addDevice("a")); // what is registered works
    loop_.advance(0.25);
    EXPECT_EQ(posted(), Names{changed});
}

// Whatever is told, an observer may close the document there and then.
TEST_F(LiveUpdateTest, StoreMayGoAtAnyNotification)
{
    NotificationCenter::Observation closing;
    const auto closeAt = [&](const QString &name) {
        capture();
        closing = NotificationCenter::defaultCenter().observe(
            name, store_.get(), [this](const auto &) { store_.reset(); });
    };
    const auto a = addDevice("a");
    closeAt(outOfDate);
    service_.publish(a);
    EXPECT_FALSE(store_);
    closeAt(outOfDate);
    service_.terminate(a);
    EXPECT_FALSE(store_);
    const auto b = addDevice("b");
    closeAt(terminated);
    store_->setAutoupdate(true);
    service_.terminate(b);
    EXPECT_FALSE(store_);
    for (const bool polled : {false, true}) {
        closeAt(changed);
        store_->setAutoupdate(!polled);
        store_->setPolledUpdate(polled);
        service_.tellOfChange();
        loop_.advance(40);
        EXPECT_FALSE(store_);
    }
    capture();
    service_.setHoldsPreparations(true);
    store_->setAutoupdate(true);
    service_.tellOfChange();
    loop_.advance(1);
    store_.reset();
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names());
    closing = {};
    capture();
}

TEST_F(LiveUpdateTest, EveryStoreOfAServiceIsTold)
{
    const auto a = addDevice("a");
    store_->update();
    auto other = TavDataStore::initFromDxRegistry(service_);
    other->setAutoupdate(true);
    posted();
    service_.terminate(a);
    EXPECT_EQ(posted(), Names{outOfDate});
    for (const TavDataStore *store : {store_.get(), other.get()}) {
        EXPECT_EQ(store->isUpToDate(), store == other.get());
        EXPECT_EQ(store->registryEntries().size(), 4U);
        EXPECT_EQ(store->registryEntries().back()->DxRegistryEntry(), 0U);
    }
    EXPECT_EQ(other->registryEntries().back()->registryState(), RegistryStateTerminated);
}
} // namespace

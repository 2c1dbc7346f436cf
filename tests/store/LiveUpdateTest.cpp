// SPDX-License-Identifier: Apache-2.0
#include "LiveStoreFixture.h"

using namespace DataStoreNotifications;

namespace {
class LiveUpdateTest : public LiveStoreFixture
{};

TEST_F(LiveUpdateTest, BurstBringsOneUpdateAQuarterSecondAfterItsLastEvent)
{
    store_->setAutoupdate(true);
    EXPECT_EQ(loop_.pendingTimers(), 0U); // up to date: nothing to do
    for (const char *name : {"a", "b", "c"}) {
        service_.publish(addDevice(name));
        loop_.advance(0.2);
    }
    EXPECT_EQ(posted(), nothing);
    EXPECT_TRUE(store_->isUpToDate());
    EXPECT_EQ(postedAfter(0.049), nothing);
    EXPECT_EQ(postedAfter(0.001), Names{changed});
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            bus
              a (new)
              b (new)
              c (new)
    )"));
    EXPECT_EQ(postedAfter(10), nothing);
    service_.match(tree_["a"]);
    loop_.advance(0.25);
    service_.reportChange();
    EXPECT_EQ(postedAfter(0.25), (Names{changed, changed}));
    EXPECT_EQ(find(tree_["a"])->registryState(), RegistryStateUnchanged);
}

TEST_F(LiveUpdateTest, BusyRegistryIsReadLaterAndAQuietOneStillSoon)
{
    store_->setAutoupdate(true);
    service_.reportBusy(3);
    loop_.advance(1.0);
    service_.reportBusy(3); // replaces the busy timer
    EXPECT_EQ(postedAfter(1.499), nothing);
    EXPECT_EQ(postedAfter(0.001), Names{changed});

    service_.reportBusy(1);
    loop_.advance(1.4);
    service_.reportBusy(0); // a quiet change replaces it
    EXPECT_EQ(postedAfter(0.249), nothing);
    EXPECT_EQ(postedAfter(10), Names{changed});

    service_.reportChange();
    service_.reportBusy(1); // leaves the quiet timer running
    EXPECT_EQ(postedAfter(0.25), Names{changed});
    EXPECT_EQ(postedAfter(1.25), Names{changed});
    EXPECT_EQ(postedAfter(10), nothing);
}

TEST_F(LiveUpdateTest, WithoutAutomaticUpdateChangesAreOnlyReported)
{
    service_.publish(addDevice("a"));
    EXPECT_FALSE(store_->isUpToDate());
    service_.reportBusy(1);
    service_.reportChange();
    EXPECT_EQ(posted(), (Names{outOfDate, outOfDate, outOfDate}));
    EXPECT_EQ(loop_.pendingTimers(), 0U);
    EXPECT_FALSE(find(tree_["a"]));

    store_->setAutoupdate(false); // out of date: reported again
    EXPECT_EQ(posted(), Names{outOfDate});
    store_->setAutoupdate(true);
    EXPECT_EQ(postedAfter(0.25), Names{changed});
    EXPECT_TRUE(store_->isUpToDate());

    service_.reportChange();
    service_.reportBusy(1);
    store_->setAutoupdate(false);
    EXPECT_EQ(loop_.pendingTimers(), 0U);
    EXPECT_EQ(posted(), nothing);
}

TEST_F(LiveUpdateTest, TerminationShowsImmediatelyOrAtTheNextUpdate)
{
    const auto a = addDevice("a");
    const auto b = addDevice("b");
    store_->update();
    store_->setAutoupdate(true);
    posted();

    service_.terminate(a);
    EXPECT_EQ(posted(), Names{objectsTerminated});
    find(a)->clearIsNew();
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
    EXPECT_EQ(posted(), (Names{changed, objectsTerminated}));
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            bus
              a (terminated)
              b (terminated)
    )"));
    store_->clearTerminatedObjects();
    EXPECT_FALSE(find(a) || find(b));
    EXPECT_TRUE(find(tree_["bus"])->childrenInPlane(servicePlane).empty());

    const auto never = addDevice("never");
    posted();
    service_.terminate(never);
    EXPECT_EQ(posted(), Names{outOfDate});
    store_->setAutoupdate(true);
    loop_.advance(1);
    posted();
    service_.terminate(never);
    EXPECT_EQ(posted(), nothing);
}

TEST_F(LiveUpdateTest, FailedRegistrationsAreReportedAndTheStoreContinues)
{
    using Refused = FakeLiveService::Refused;
    EXPECT_EQ(delegate_->errors, 0);
    for (const auto &[refused, errors] :
         {std::pair{Refused::Power, 1}, std::pair{Refused::Ports, 7},
          std::pair{Refused::Interest, 2}}) {
        delegate_->errors = 0;
        service_.setRefused(refused);
        capture();
        EXPECT_EQ(delegate_->errors, errors);
        EXPECT_TRUE(find(tree_["bus"]));
        store_->setAutoupdate(true);
        store_->update();
        EXPECT_EQ(posted(), Names{changed});
    }
    service_.publish(addDevice("a")); // what is registered works
    EXPECT_EQ(postedAfter(0.25), Names{changed});
}

// An observer may close the document on any notification.
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
    closeAt(objectsTerminated);
    store_->setAutoupdate(true);
    service_.terminate(b);
    EXPECT_FALSE(store_);
    for (const bool polled : {false, true}) {
        closeAt(changed);
        store_->setAutoupdate(!polled);
        store_->setPolledUpdate(polled);
        service_.reportChange();
        loop_.advance(40);
        EXPECT_FALSE(store_);
    }
    capture();
    service_.setHoldsPreparations(true);
    store_->setAutoupdate(true);
    service_.reportChange();
    loop_.advance(1);
    store_.reset();
    service_.finishPreparations();
    EXPECT_EQ(posted(), nothing);
    closing = {};
    capture();
}

TEST_F(LiveUpdateTest, EveryStoreOfAServiceIsNotified)
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

TEST_F(LiveUpdateTest, WhilePausedNothingMovesAndAllIsAppliedAfterwards)
{
    const auto a = addDevice("a");
    store_->update();
    store_->setAutoupdate(true);
    store_->setPolledUpdate(true);
    service_.reportChange();
    posted();
    store_->setPaused(true);
    Q_EMIT service_.eventFeed()->happened({});
    service_.publish(addDevice("b"));
    service_.terminate(a);
    service_.reportBusy(1);
    EXPECT_EQ(postedAfter(100), nothing);
    EXPECT_EQ(store_->heldEvents(), 1U);
    EXPECT_NE(find(a)->registryState(), RegistryStateTerminated);
    store_->setPaused(false);
    EXPECT_EQ(posted(), (Names{objectsTerminated, changed, objectsTerminated}));
    EXPECT_EQ(find(a)->registryState(), RegistryStateTerminated);
    EXPECT_TRUE(find(tree_["b"]));
    EXPECT_TRUE(postedAfter(30).contains(changed)); // timed updates go on
    store_->setPolledUpdate(false);

    service_.setHoldsPreparations(true);
    service_.reportChange();
    loop_.advance(1);
    store_->setPaused(true);
    service_.finishPreparations(); // began before
    EXPECT_EQ(posted(), nothing);
    service_.setHoldsPreparations(false);
    store_->setPaused(false);
    EXPECT_TRUE(posted().contains(changed));
    store_->setPaused(true); // until the end
}
} // namespace

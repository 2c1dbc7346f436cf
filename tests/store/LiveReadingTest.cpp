// SPDX-License-Identifier: Apache-2.0
#include "LiveStoreFixture.h"

#include <limits>

using namespace DataStoreNotifications;

namespace {
// When a store rereads its registry.
class LiveReadingTest : public LiveStoreFixture
{};

TEST_F(LiveReadingTest, NothingIsReadBetweenSleepAndWake)
{
    store_->setAutoupdate(true);
    store_->setPolledUpdate(true);
    store_->setPollInterval(10);
    service_.reportPower(CanSystemSleep, 1);
    service_.reportPower(0xe0000340, 2); // of no concern
    EXPECT_EQ(service_.allowedPowerChanges(), std::vector<quintptr>{1});
    service_.reportChange(); // its timer is pending when sleep begins
    service_.reportPower(SystemWillSleep, 3);
    EXPECT_EQ(service_.allowedPowerChanges(), (std::vector<quintptr>{1, 3}));
    service_.publish(addDevice("a"));
    EXPECT_EQ(postedAfter(35), nothing);
    EXPECT_EQ(service_.preparations(), 1);

    service_.reportPower(SystemHasPoweredOn, 0);
    EXPECT_EQ(postedAfter(0.249), nothing);
    EXPECT_EQ(postedAfter(0.001), Names{changed});
    EXPECT_TRUE(find(tree_["a"]));
    EXPECT_EQ(postedAfter(5), Names{changed}); // polls went on being timed: the fourth is due at 40

    store_->setAutoupdate(false);
    service_.reportPower(SystemWillSleep, 4);
    service_.reportChange();
    EXPECT_EQ(posted(), Names{outOfDate});
    service_.reportPower(SystemHasPoweredOn, 0);
    EXPECT_EQ(posted(), Names{outOfDate});
    EXPECT_EQ(service_.allowedPowerChanges(), (std::vector<quintptr>{1, 3, 4}));
}

TEST_F(LiveReadingTest, PollsAtItsInterval)
{
    EXPECT_EQ(store_->pollInterval(), 30.0);
    for (const double refused : {0.0, -1.0, 3600.5, std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity()}) {
        store_->setPollInterval(refused);
        EXPECT_EQ(store_->pollInterval(), 30.0) << refused;
    }
    store_->setPolledUpdate(true);
    EXPECT_EQ(postedAfter(29.9), nothing);
    EXPECT_EQ(postedAfter(30.1), (Names{changed, changed}));
    loop_.advance(20);
    store_->setPollInterval(3600.0); // restarts
    EXPECT_EQ(postedAfter(3599), nothing);
    EXPECT_EQ(postedAfter(1), Names{changed});

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

TEST_F(LiveReadingTest, HoldsBackOutsideTheDefaultMode)
{
    store_->setAutoupdate(true);
    service_.reportChange();
    loop_.setIsInDefaultMode(false);
    service_.terminate(tree_["bus"]);
    service_.reportPower(CanSystemSleep, 1);
    EXPECT_EQ(postedAfter(100), nothing);
    EXPECT_TRUE(service_.allowedPowerChanges().empty());
    loop_.setIsInDefaultMode(true);
    EXPECT_EQ(posted(), (Names{objectsTerminated, changed, objectsTerminated}));
    EXPECT_EQ(service_.allowedPowerChanges(), std::vector<quintptr>{1});
}

TEST_F(LiveReadingTest, ChangeDuringAReadingLeadsToAnotherUpdate)
{
    service_.setHoldsPreparations(true);
    store_->setAutoupdate(true);
    service_.reportChange();
    loop_.advance(0.25);
    ASSERT_EQ(service_.heldPreparations(), 1U);
    service_.reportChange();
    EXPECT_EQ(posted(), nothing);
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(0.25);
    service_.finishPreparations();
    EXPECT_EQ(posted(), Names{changed});
    loop_.advance(10);
    EXPECT_EQ(service_.heldPreparations(), 0U);

    // A reading so long that the next is requested before it ends.
    service_.reportChange();
    loop_.advance(0.25);
    service_.reportChange();
    loop_.advance(0.25);
    ASSERT_EQ(service_.heldPreparations(), 2U);
    service_.finishPreparations();
    EXPECT_EQ(posted(), (Names{changed, changed}));

    // Without automatic update, a change that a poll may have missed stays reported.
    store_->setAutoupdate(false);
    store_->setPolledUpdate(true);
    loop_.advance(30);
    service_.reportChange();
    EXPECT_EQ(posted(), Names{outOfDate});
    service_.finishPreparations();
    EXPECT_EQ(posted(), (Names{changed, outOfDate}));
    EXPECT_FALSE(store_->isUpToDate());

    // A direct update has newer data than the poll.
    loop_.advance(30);
    store_->update();
    EXPECT_EQ(posted(), Names{changed});
    service_.finishPreparations();
    EXPECT_EQ(posted(), nothing);
    EXPECT_TRUE(store_->isUpToDate());
    EXPECT_EQ(loop_.pendingTimers(), 1U);

    // Sleep begins while the service reads.
    loop_.advance(30);
    service_.reportPower(SystemWillSleep, 1);
    service_.finishPreparations();
    EXPECT_EQ(posted(), nothing);
}
} // namespace

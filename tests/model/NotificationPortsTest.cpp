#include "tests/support/RegistryTest.h"
#include "tests/support/SimulatedRunLoop.h"

namespace {
class NotificationPortsTest : public RegistryTest
{
protected:
    NotificationPortsTest()
    {
        tree_.plane("DxService", R"(
            Root : DxRoot
              Host : DxHost : DxService
                a : DxDevice : DxService
                b : DxDevice : DxService
                folder : DxFolder
        )");
        port_ = service_.createNotificationPort();
        service_.addToRunLoop(service_.messagePort(port_), [this](const auto &message) {
            ++messages_;
            service_.dispatchMessage(port_, message);
        });
    }
    void TearDown() override
    {
        service_.destroyNotificationPort(port_);
        RegistryTest::TearDown();
    }

    RegistryIterator watch(const char *type, bool drains = true)
    {
        RegistryIterator iterator = 0;
        EXPECT_EQ(service_.addMatchingNotification(
                      port_, type, QStringLiteral("DxService"),
                      [this, drains](RegistryIterator its) {
                          ++calls_;
                          if (drains)
                              drain(its);
                      },
                      iterator),
                  RegistryStatus::Success);
        return iterator;
    }
    void drain(RegistryIterator iterator)
    {
        while (const RegistryObject object = service_.iteratorNext(iterator)) {
            seen_.push_back(object);
            service_.release(object);
        }
    }

    SimulatedRunLoop loop_;
    NotificationPort port_ = 0;
    int messages_ = 0;
    int calls_ = 0;
    std::vector<RegistryObject> seen_;
};

TEST_F(NotificationPortsTest, MatchingNotificationIsArmedByDraining)
{
    const RegistryIterator publish = watch("DxServicePublish", false);
    const RegistryIterator terminate = watch("DxServiceTerminate");
    service_.publish(tree_["a"]);
    EXPECT_EQ(calls_, 0); // never drained yet
    drain(publish);
    EXPECT_EQ(seen_, std::vector{tree_["a"]});
    service_.publish(tree_["b"]);
    service_.publish(tree_["a"]);
    EXPECT_EQ(calls_, 1);              // the callback left it unarmed
    service_.publish(tree_["folder"]); // another class
    drain(publish);
    EXPECT_EQ(seen_, (std::vector{tree_["a"], tree_["b"], tree_["a"]}));
    service_.publish(tree_["b"]);
    EXPECT_EQ(calls_, 2);
    EXPECT_EQ(service_.iteratorNext(publish), tree_["b"]);
    service_.release(tree_["b"]);
    service_.publish(tree_["a"]); // not armed before the end was seen
    EXPECT_EQ(calls_, 2);

    drain(terminate);
    service_.terminate(tree_["b"]);
    EXPECT_EQ(calls_, 3);
    service_.releaseIterator(publish);
    service_.releaseIterator(terminate);
    EXPECT_EQ(service_.iteratorNext(publish), 0U);
}

TEST_F(NotificationPortsTest, MessagesWaitForARunLoopAndItsDefaultMode)
{
    drain(watch("DxServicePublish"));
    loop_.setIsInDefaultMode(false);
    service_.publish(tree_["a"]);
    service_.publish(tree_["b"]);
    EXPECT_EQ(messages_, 0);
    loop_.setIsInDefaultMode(true);
    EXPECT_EQ(messages_, 1); // one for both
    EXPECT_EQ(seen_.size(), 2U);
    service_.removeFromRunLoop(service_.messagePort(port_));
    service_.publish(tree_["a"]);
    EXPECT_EQ(messages_, 1);
    EXPECT_FALSE(service_.addToRunLoop(port_ + 100, {}));
    EXPECT_EQ(service_.messagePort(port_ + 100), 0U);
}

TEST_F(NotificationPortsTest, InterestIsInOneObjectAndOneKind)
{
    const RegistryObject host = service_.entryFromPath(QStringLiteral("DxService:/"));
    quintptr busy = 0;
    RegistryNotification notification = 0;
    EXPECT_EQ(service_.addInterestNotification(
                  port_, host, "DxBusyInterest",
                  [&](RegistryObject object, quint32, quintptr argument) {
                      EXPECT_TRUE(service_.objectsEqual(object, host));
                      busy = argument;
                      service_.releaseNotification(notification); // by its own callback
                  },
                  notification),
              RegistryStatus::Success);
    service_.tellOfChange();
    EXPECT_EQ(messages_, 0);
    service_.tellBusy(7);
    EXPECT_EQ(busy, 7U);
    service_.tellBusy(8);
    EXPECT_EQ(busy, 7U);
    EXPECT_NE(service_.addInterestNotification(port_, host, "DxOther", {}, notification),
              RegistryStatus::Success);
    EXPECT_NE(service_.addInterestNotification(port_, 0, "DxBusyInterest", {}, notification),
              RegistryStatus::Success);
    RegistryIterator iterator = 0;
    EXPECT_NE(service_.addMatchingNotification(port_, "DxOther", {}, {}, iterator),
              RegistryStatus::Success);
    EXPECT_EQ(iterator, 0U);
    service_.release(host);
}
} // namespace

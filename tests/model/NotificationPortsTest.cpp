// SPDX-License-Identifier: Apache-2.0
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
                a
                b
                folder : DxFolder
        )");
        port_ = service_.createNotificationPort();
        service_.addToRunLoop(service_.messagePort(port_), [this](const auto &message) {
            service_.dispatchMessage(port_, message);
        });
    }
    void TearDown() override
    {
        service_.destroyNotificationPort(port_);
        RegistryTest::TearDown();
    }

    RegistryIterator watch(const char *type)
    {
        RegistryIterator iterator = 0;
        service_.addMatchingNotification(
            port_, type, QStringLiteral("DxService"), [this](RegistryIterator) { ++calls_; },
            iterator);
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
    int calls_ = 0;
    std::vector<RegistryObject> seen_;
};

TEST_F(NotificationPortsTest, MatchingNotificationIsArmedByDraining)
{
    const RegistryIterator publish = watch("DxServicePublish");
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
}

TEST_F(NotificationPortsTest, InterestIsInOneObjectAndOneKind)
{
    const RegistryObject host = service_.entryFromPath(QStringLiteral("DxService:/"));
    quintptr busy = 0;
    RegistryNotification notification = 0;
    service_.addInterestNotification(
        port_, host, "DxBusyInterest",
        [&](RegistryObject, quint32, quintptr argument) {
            busy = argument;
            service_.releaseNotification(notification); // by its own callback
        },
        notification);
    service_.reportChange(); // of another kind, which must not use up the notification
    service_.reportBusy(7);
    EXPECT_EQ(busy, 7U);
    service_.reportBusy(8);
    EXPECT_EQ(busy, 7U);
    service_.release(host);
}
} // namespace

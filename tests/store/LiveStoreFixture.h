// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/SimulatedRunLoop.h"

using Names = QStringList;
inline const Names nothing;

// A store that follows a scripted registry, in simulated time.
class LiveStoreFixture : public RegistryTest
{
protected:
    LiveStoreFixture()
    {
        tree_.plane("DxService", R"(
            Root : DxRoot
              Host : DxHost : DxService
                bus : DxDevice : DxService
        )");
        capture();
    }
    void TearDown() override
    {
        observation_ = {};
        RegistryTest::TearDown();
        EXPECT_EQ(loop_.pendingTimers(), 0U);
    }

    void capture()
    {
        RegistryTest::capture(delegate_);
        posted_.clear();
        observation_ = {};
        for (const QString &name :
             {DataStoreNotifications::outOfDate, DataStoreNotifications::changed,
              DataStoreNotifications::objectsTerminated})
            observation_.push_back(NotificationCenter::defaultCenter().observe(
                name, store_.get(), [this](const auto &its) { posted_.append(its.name); }));
    }
    Node addDevice(const QByteArray &name)
    {
        tree_.plane("DxService", ("Root\n  Host\n    bus\n      " + name).constData());
        return tree_[name.constData()];
    }
    Names posted() { return std::exchange(posted_, {}); }
    Names postedAfter(double seconds)
    {
        loop_.advance(seconds);
        return posted();
    }

    SimulatedRunLoop loop_;
    std::shared_ptr<CountingDelegate> delegate_ = std::make_shared<CountingDelegate>();
    Names posted_;
    std::vector<NotificationCenter::Observation> observation_;
};

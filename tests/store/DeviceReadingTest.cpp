// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/RunLoop.h"
#include "tests/support/DeviceEventsFixture.h"

#include <malloc.h>
#include <random>

namespace {
// Events during readings of the tree.
class DeviceReadingTest : public DeviceEventsFixture
{};

TEST_F(DeviceReadingTest, ReadingsAreInOrderAndNoneIsOlderThanItsRequest)
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
    EXPECT_FALSE(service_->entryFromPath(QStringLiteral("DxService:/bus/none")));

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

TEST_F(DeviceReadingTest, StoreAndServiceMayGoWhileTheServiceReads)
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

// A device that vanishes after a reading has seen it, before the reading ends.
TEST_F(DeviceReadingTest, RemovalDuringAReadingIsNotMissed)
{
    const auto childrenOfBus = [this] {
        const auto bus = RegistryHandle::adopt(
            *service_, service_->entryFromPath(QStringLiteral("DxService:/bus")));
        RegistryIterator children = 0;
        service_->childIterator(bus.get(), "DxService", children);
        int count = 0;
        while (RegistryHandle::adopt(*service_, service_->iteratorNext(children)))
            ++count;
        service_->releaseIterator(children);
        return count;
    };
    for (int i = 0; i < 300; ++i)
        device("devices/bus/" + QByteArray::number(i));
    follow(false);
    for (int round = 0; round < 10; ++round) {
        device("devices/bus/brief");
        bool isReady = false;
        service_->prepareAsync([&] { isReady = true; });
        usleep(static_cast<useconds_t>(round) * 1000);
        remove("devices/bus/brief");
        events_.send("remove", "devices/bus/brief");
        ASSERT_TRUE(waitFor([&] { return isReady; }));
        turnEventLoopFor(5);
        EXPECT_EQ(childrenOfBus(), 301) << round; // and not the one that went
    }
}

// Random additions and removals whose events come once, twice, late or not at all.
TEST_F(DeviceReadingTest, StormEndsAsAFreshCapture)
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
                events_.send("change", path);
                [[fallthrough]];
            default:
                events_.send(adds ? "add" : "remove", path);
            }
            if (random() % 100 == 0)
                turnEventLoopFor(static_cast<int>(random() % 150));
        }
    };
    const auto settle = [&] {
        ASSERT_TRUE(updatesOn("change", "devices/bus"));
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
    EXPECT_EQ(StorePrinter::registry(*store_), fresh());
    EXPECT_GT(posted_.value(DataStoreNotifications::objectsTerminated), 0);

    while (present.size() > kept.size()) {
        remove(present.back());
        present.pop_back();
    }
    settle();
    EXPECT_EQ(StorePrinter::registry(*store_), fresh());
    const auto after = mallinfo2().uordblks;
    const auto entries = std::max(entriesBefore, store_->registryEntries().size());
    EXPECT_LT(after, before + before / 4 + entries * 1000) << "grew from " << before;
}
} // namespace

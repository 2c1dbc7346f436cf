// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/OneShotTimer.h"
#include "platform/runloop/RunLoopSource.h"
#include "tests/support/EventLoop.h"
#include "tests/support/SimulatedRunLoop.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {
TEST(OneShotTimer, ActsOnceUnlessInvalidatedOrForgotten)
{
    SimulatedRunLoop loop;
    std::string acted;
    const auto schedule = [&](double seconds, char name) {
        return OneShotTimer::schedule(seconds, [&acted, name](const auto &) { acted += name; });
    };
    const auto late = schedule(0.3, 'l');
    const auto early = schedule(0.1, 'e');
    const auto invalidated = schedule(0.2, 'i');
    schedule(0.2, 'f');
    invalidated->invalidate();
    loop.advance(0.1);
    EXPECT_EQ(acted, "e");
    loop.advance(10);
    EXPECT_EQ(acted, "el");
    EXPECT_FALSE(early->isPending() || late->isPending());

    OneShotTimer::Ref own = OneShotTimer::schedule(1, [&](const OneShotTimer::Ref &timer) {
        EXPECT_EQ(own, timer);
        own.reset(); // may be destroyed while it fires
        acted += 'o';
    });
    loop.advance(1);
    EXPECT_EQ(acted, "elo");
}

TEST(OneShotTimer, WaitsForTheDefaultModeInTheOrderOfFiring)
{
    SimulatedRunLoop loop;
    std::string acted;
    const auto second = OneShotTimer::schedule(2, [&](const auto &) { acted += '2'; });
    const auto first = OneShotTimer::schedule(1, [&](const auto &) {
        acted += '1';
        loop.setModeTest([] { return false; }); // as if it opened a menu
    });
    const auto dropped = OneShotTimer::schedule(1, [&](const auto &) { acted += 'd'; });
    loop.setIsInDefaultMode(false);
    loop.advance(5);
    EXPECT_EQ(acted, "");
    dropped->invalidate();
    loop.setIsInDefaultMode(true);
    EXPECT_EQ(acted, "1");
    loop.setIsInDefaultMode(true);
    EXPECT_EQ(acted, "12");
}

TEST(RunLoop, SkipsCallsOfADestroyedOwner)
{
    SimulatedRunLoop loop;
    std::string called;
    const auto witness = std::make_shared<int>();
    auto owner = std::make_shared<int>();
    bool isDefault = false;
    loop.setModeTest([&] { return isDefault; });
    loop.performInDefaultMode(witness, [&] { owner.reset(); });
    loop.performInDefaultMode(owner, [&] { called += '1'; });
    isDefault = true;
    loop.performInDefaultMode(owner, [&] { called += '2'; });
    loop.performInDefaultMode(witness, [&] { called += 'w'; });
    EXPECT_EQ(called, "w");

    auto object = std::make_unique<QObject>();
    RunLoop::performLater(*object, [&] { called += 'l'; });
    EXPECT_EQ(called, "w");
    turnEventLoopFor(1);
    EXPECT_EQ(called, "wl");
    isDefault = false;
    RunLoop::performLater(*object, [&] { called += 'g'; });
    turnEventLoopFor(1);
    object.reset();
    loop.setIsInDefaultMode(true);
    EXPECT_EQ(called, "wl");
}

TEST(RunLoopSource, ReadsInTheDefaultModeOnlyAndRestsElsewhere)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    int calls = 0;
    std::unique_ptr<RunLoopSource> source;
    source = std::make_unique<RunLoopSource>(ends[0], [&] {
        char byte;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
        if (++calls == 2)
            source.reset(); // from its own call
    });
    bool isDefault = false;
    int tests = 0;
    RunLoop::main().setModeTest([&] {
        ++tests;
        return isDefault;
    });
    ASSERT_EQ(write(ends[1], "abc", 3), 3);
    turnEventLoopFor(50);
    EXPECT_EQ(calls, 0);
    EXPECT_LE(tests, 5); // no repeated tests
    isDefault = true;
    RunLoop::main().noteModeChange();
    EXPECT_TRUE(waitFor([&] { return calls == 2; }));
    turnEventLoopFor(20);
    EXPECT_EQ(calls, 2);
    RunLoop::main().setModeTest(nullptr);
    close(ends[0]);
    close(ends[1]);
}
} // namespace

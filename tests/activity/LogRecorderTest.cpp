// SPDX-License-Identifier: Apache-2.0
#include "activity/LogRecorder.h"
#include "activity/RecentChanges.h"
#include "tests/support/DeviceEventsFixture.h"
#include "tests/support/QtPrinters.h"

using Kind = RegistryEvent::Kind;

namespace {
// A made tree whose events are written into a log.
class LogRecorderTest : public DeviceEventsFixture
{
protected:
    void record(bool automatically = true)
    {
        follow(automatically);
        // Shared with the fixture, which owns it.
        recorder_ = std::make_unique<LogRecorder>(
            std::shared_ptr<TavDataStore>(store_.get(), [](auto *) {}), log_);
        QObject::connect(recorder_.get(), &LogRecorder::changeNoted, &recent_,
                         &RecentChanges::note);
    }
    void TearDown() override { recorder_.reset(); }

    const LogRow &row(quint64 number) const { return log_.row(number); }
    bool waitForRows(quint64 count)
    {
        return waitFor([&] { return log_.endNumber() >= count; });
    }
    std::string changes(quint64 number) const
    {
        QStringList texts;
        for (const LogChange &change : row(number).changes)
            texts << change.key + QStringLiteral(": ") + change.before + QStringLiteral(" → ") +
                         change.after;
        return texts.join(QStringLiteral(", ")).toStdString();
    }

    EventLog log_;
    RecentChanges recent_;
    std::unique_ptr<LogRecorder> recorder_;
};

TEST_F(LogRecorderTest, RowsAreCompletedByTheUpdateThatFollows)
{
    record();
    device("devices/bus/fresh");
    events_.send({.action = DeviceEvent::Action::Add,
                  .path = "devices/bus/fresh",
                  .subsystem = "net",
                  .sequence = 41});
    ASSERT_TRUE(waitForRows(1));
    EXPECT_EQ(row(0).entryTag, 0U);
    EXPECT_EQ(row(0).name, QStringLiteral("fresh"));
    ASSERT_TRUE(waitForUpdate());
    EXPECT_EQ(row(0).event.kind, Kind::Appeared);
    EXPECT_EQ(row(0).event.sequence, 41U);
    EXPECT_EQ(row(0).path, QStringLiteral("DxService:/bus/fresh"));
    EXPECT_EQ(row(0).entryTag, at("DxService:/bus/fresh")->entryTag());
    EXPECT_TRUE(recent_.secondsSince(row(0).entryTag));

    made_.file("devices/bus/fresh/mtu", "1400");
    made_.file("devices/bus/fresh/speed", "10");
    events_.send({.action = DeviceEvent::Action::Change,
                  .path = "devices/bus/fresh",
                  .changes = {{QStringLiteral("speed"), {}, QStringLiteral("10")}}});
    ASSERT_TRUE(waitForUpdate());
    EXPECT_EQ(changes(1), "speed:  → 10, mtu:  → 1400"); // what the event says is not repeated

    remove("devices/bus/fresh");
    events_.send("remove", "devices/bus/fresh");
    ASSERT_TRUE(waitForRows(3));
    EXPECT_EQ(row(2).event.kind, Kind::Gone);
    EXPECT_EQ(row(2).entryTag, row(0).entryTag);
    EXPECT_EQ(row(2).path, row(0).path);
}

TEST_F(LogRecorderTest, FollowsNamesThatChangeBeforeTheUpdate)
{
    device("devices/bus/known");
    record(false);
    const auto rename = [&](const char *from, const char *to) {
        ASSERT_EQ(::rename(made_.path(from).constData(), made_.path(to).constData()), 0);
        events_.send({.action = DeviceEvent::Action::Move,
                      .path = SysfsPath(QByteArray(to)),
                      .oldPath = SysfsPath(QByteArray(from))});
    };
    rename("devices/bus/known", "devices/bus/second");
    rename("devices/bus/second", "devices/bus/third");
    rename("devices/bus/third", "devices/elsewhere");
    ASSERT_TRUE(waitForRows(3));
    EXPECT_EQ(row(0).event.kind, Kind::Renamed);
    EXPECT_EQ(row(0).event.oldKernelPath, QStringLiteral("/sys/devices/bus/known"));
    EXPECT_EQ(row(2).event.kind, Kind::Moved);
    const quint64 tag = at("DxService:/bus/known")->entryTag();
    for (const quint64 number : {0, 1, 2})
        EXPECT_EQ(row(number).entryTag, tag);
    store_->update();
    EXPECT_EQ(row(0).path, QStringLiteral("DxService:/elsewhere"));
}

TEST_F(LogRecorderTest, CountsWhatIsLostAndWritesDownWhatOnlyAnUpdateFinds)
{
    made_.file("devices/bus/old/mode", "slow");
    made_.file("devices/bus/old/power/runtime_active_time", "1");
    record(false);
    events_.send({.path = "devices/bus", .sequence = 7});
    events_.lose();
    events_.send({.path = "devices/bus", .sequence = 17});
    ASSERT_TRUE(waitForRows(3));
    EXPECT_EQ(row(1).event.kind, Kind::Lost);
    EXPECT_EQ(row(1).event.lost, 9U);

    made_.file("devices/bus/old/power/runtime_active_time", "2"); // always changes
    store_->update();
    EXPECT_EQ(log_.endNumber(), 3U);
    made_.file("devices/bus/old/mode", "fast");
    store_->update();
    ASSERT_EQ(log_.endNumber(), 4U);
    EXPECT_EQ(row(3).event.kind, Kind::Changed);
    EXPECT_EQ(changes(3), "mode: slow → fast");
}

TEST_F(LogRecorderTest, BurstsAreAllThere)
{
    record();
    constexpr quint64 count = 10'000;
    for (quint64 i = 1; i <= count; ++i)
        events_.send({.path = "devices/bus", .sequence = i});
    ASSERT_TRUE(waitForRows(count));
    for (quint64 i = 0; i < count; ++i)
        ASSERT_EQ(row(i).event.sequence, i + 1);
}

TEST(EventLog, IsBoundedInRowsAndBytes)
{
    EventLog log;
    constexpr quint64 more = 50;
    for (quint64 i = 0; i < EventLog::maxRows + more; ++i)
        log.append({});
    EXPECT_EQ(log.dropped(), more);
    EXPECT_EQ(log.firstNumber(), more);
    LogRow large;
    large.changes.push_back({QStringLiteral("key"), QString(1'000'000, u'x'), {}});
    for (int i = 0; i < 30; ++i)
        log.append(large);
    EXPECT_LE(log.bytes(), EventLog::maxBytes);
    EXPECT_EQ(log.endNumber() - log.firstNumber() + log.dropped(), EventLog::maxRows + more + 30);
    log.clear();
    EXPECT_EQ(log.bytes(), 0U);
    EXPECT_EQ(log.endNumber(), log.firstNumber());
}
} // namespace

#include "model/linux/DeviceEvent.h"

#include <QByteArrayList>
#include <gtest/gtest.h>
#include <random>

namespace {
using Action = DeviceEvent::Action;

TEST(DeviceEvent, TellsWhatHappenedAndWhere)
{
    const std::pair<const char *, Action> actions[] = {
        {"add", Action::Add},       {"remove", Action::Remove},  {"bind", Action::Bind},
        {"unbind", Action::Unbind}, {"change", Action::Change},  {"move", Action::Change},
        {"online", Action::Change}, {"offline", Action::Change}, {"something new", Action::Change},
    };
    for (const auto &[name, action] : actions) {
        const auto event = DeviceEvent::parse(name, "/devices/virtual/net/lo");
        ASSERT_TRUE(event) << name;
        EXPECT_EQ(event->action, action) << name;
        EXPECT_EQ(event->path, "devices/virtual/net/lo");
    }
    EXPECT_TRUE(DeviceEvent::parse("add", "/module/zram"));
    EXPECT_TRUE(DeviceEvent::parse("add", "/devices/..hidden/a b!c"));
}

TEST(DeviceEvent, RefusesWhatNamesNoObject)
{
    const QByteArray paths[] = {{},
                                "/",
                                "devices/a",
                                "//devices/a",
                                "/devices//a",
                                "/devices/a/",
                                "/devices/../../etc/passwd",
                                "/devices/.",
                                "/devices/a/..",
                                QByteArray("/devices/a\0b", 12),
                                "/devices/" + QByteArray(256, 'n'),
                                QByteArray("/devices") + QByteArray("/deep").repeated(1000)};
    for (const QByteArray &path : paths)
        EXPECT_FALSE(DeviceEvent::parse("add", path)) << path.left(40).toStdString();
    EXPECT_FALSE(DeviceEvent::parse({}, "/devices/a"));
}

// Whatever comes, what is let through is a plain path below the root.
TEST(DeviceEvent, StaysBelowTheRootOnRandomBytes)
{
    std::mt19937 random(7);
    const QByteArray pieces[] = {"/",    ".",       "..",  "a", QByteArray(1, '\0'),
                                 "\xff", "devices", "/../"};
    int accepted = 0;
    for (int round = 0; round < 20'000; ++round) {
        QByteArray path = round % 2 ? "/" : "";
        for (auto count = random() % 12; count > 0; --count)
            path += pieces[random() % std::size(pieces)];
        const auto event = DeviceEvent::parse("change", path);
        if (!event)
            continue;
        ++accepted;
        ASSERT_EQ('/' + event->path, path);
        for (const QByteArray &name : event->path.split('/')) {
            ASSERT_FALSE(name.isEmpty() || name == "." || name == ".." || name.contains('\0'))
                << path.toStdString();
        }
    }
    EXPECT_GT(accepted, 100);
}
} // namespace

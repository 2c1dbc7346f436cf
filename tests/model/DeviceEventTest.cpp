#include "model/linux/DeviceEvent.h"

#include <QByteArrayList>
#include <gtest/gtest.h>

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

} // namespace

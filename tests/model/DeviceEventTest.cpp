// SPDX-License-Identifier: Apache-2.0
#include "model/linux/DeviceEvent.h"

#include <QByteArrayList>
#include <gtest/gtest.h>

TEST(DeviceEvent, RefusesOtherPaths)
{
    const auto event = DeviceEvent::parse("something new", "/devices/..hidden/a b!c");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->action, DeviceEvent::Action::Change);
    EXPECT_EQ(event->path, "devices/..hidden/a b!c");
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

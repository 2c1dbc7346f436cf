// SPDX-License-Identifier: Apache-2.0
#include "platform/host/ColorSchemeSetting.h"

#include "tests/support/EventLoop.h"
#include "tests/support/SettingsPortal.h"

#include <gtest/gtest.h>

namespace {
using Scheme = ColorSchemeSetting::Scheme;

class ColorSchemeSettingTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!PrivateBus::isAvailable())
            GTEST_SKIP() << "dbus-daemon is not installed";
        bus_.emplace();
        portal_.emplace(bus_->connect("portal"));
    }
    void TearDown() override
    {
        portal_.reset();
        for (const char *name : {"portal", "client"})
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
    }

    std::optional<PrivateBus> bus_;
    std::optional<SettingsPortal> portal_;
};

TEST_F(ColorSchemeSettingTest, IsReadFromNewAndOldPortalsAndFollowed)
{
    const ColorSchemeSetting nowhere(QDBusConnection(QStringLiteral("no such connection")));
    EXPECT_EQ(nowhere.scheme(), Scheme::NoPreference);
    ColorSchemeSetting early(bus_->connect("client"));
    ASSERT_TRUE(portal_->start());
    portal_->scheme = 1;
    for (const bool isOld : {false, true}) {
        SCOPED_TRACE(isOld);
        portal_->isOld = isOld;
        ColorSchemeSetting setting(bus_->connect("client"));
        EXPECT_EQ(setting.scheme(), Scheme::NoPreference); // does not wait
        ASSERT_TRUE(waitFor([&] { return setting.scheme() == Scheme::Dark; }));
        portal_->change("org.example", 2); // of another group
        portal_->change(SettingsPortal::appearance, 1);
        turnEventLoopFor(50);
        EXPECT_EQ(setting.scheme(), Scheme::Dark);
        portal_->change(SettingsPortal::appearance, 2);
        ASSERT_TRUE(waitFor([&] { return setting.scheme() == Scheme::Light; }));
        EXPECT_TRUE(waitFor([&] { return early.scheme() == Scheme::Light; }));
        portal_->change(SettingsPortal::appearance, 9); // unknown
        ASSERT_TRUE(waitFor([&] { return setting.scheme() == Scheme::NoPreference; }));
    }
}
} // namespace

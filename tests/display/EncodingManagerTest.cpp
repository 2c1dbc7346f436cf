#include "DisplayFixture.h"

#include "display/EncodingManager.h"
#include "platform/NotificationCenter.h"
#include "platform/PreferencesStore.h"

#include <QJsonArray>
#include <gtest/gtest.h>

namespace {
using Encodings = EncodingManager::Encodings;

class EncodingManagerTest : public testing::Test
{
protected:
    static bool isStored() { return PreferencesStore::standard().isStored(key); }

    static inline const QString key = QStringLiteral("Encodings");
    PreferencesFolder preferences_;
    EncodingManager manager_;
    int told_ = 0;
    NotificationCenter::Observation observation_ = NotificationCenter::defaultCenter().observe(
        EncodingManager::listChangedNotification(), nullptr, [this](const auto &) { ++told_; });
};

TEST_F(EncodingManagerTest, AvailableInDisplayOrder)
{
    constexpr quint32 utf32 = 65536 + 1017;
    constexpr quint32 latin2 = 65536 + 5;
    constexpr quint32 latin9 = 65536 + 111;
    // Unicode, then script by script.
    const Encodings order{TextEncodings::utf8,
                          TextEncodings::utf16,
                          utf32,
                          TextEncodings::ascii,
                          TextEncodings::isoLatin1,
                          TextEncodings::windowsLatin1,
                          TextEncodings::kelRoman,
                          latin9,
                          latin2};
    Encodings available = EncodingManager::allAvailableStringEncodings();
    EXPECT_EQ(available.front(), TextEncodings::utf8);
    std::erase_if(available, [&](quint32 encoding) {
        return std::find(order.begin(), order.end(), encoding) == order.end();
    });
    EXPECT_EQ(available, order);
}

TEST_F(EncodingManagerTest, DefaultsApplyWhileNothingIsStored)
{
    EXPECT_EQ(manager_.enabledEncodings(), // the locale of tests is UTF-8
              (Encodings{TextEncodings::ascii, TextEncodings::utf16, TextEncodings::utf8,
                         TextEncodings::kelRoman, TextEncodings::windowsLatin1}));
    EXPECT_FALSE(isStored());
}

TEST_F(EncodingManagerTest, ChangesAreWrittenAndTold)
{
    manager_.setEnabledEncodings({TextEncodings::utf8, TextEncodings::none, 65536 + 17});
    EXPECT_EQ(told_, 1);
    preferences_.restart();
    EXPECT_EQ(EncodingManager().enabledEncodings(), (Encodings{TextEncodings::utf8, 65536 + 17}));

    int refreshed = 0;
    manager_.setListUpdater([&] { ++refreshed; });
    manager_.clearAll();
    EXPECT_TRUE(EncodingManager().enabledEncodings().empty());
    EXPECT_TRUE(isStored());
    manager_.selectAll();
    EXPECT_EQ(EncodingManager().enabledEncodings(), EncodingManager::allAvailableStringEncodings());
    manager_.revertToDefault();
    EXPECT_FALSE(isStored());
    EXPECT_EQ(manager_.enabledEncodings(), EncodingManager::defaultEncodings());
    EXPECT_EQ(told_, 4);
    EXPECT_EQ(refreshed, 3);
}

TEST_F(EncodingManagerTest, WhatIsStoredMayBeDamaged)
{
    PreferencesStore::standard().setValue(
        key, QJsonArray{4, -1, 4, QStringLiteral("1"), 1.5, 4294967295.0, 4294967300.0, 7, 30});
    EXPECT_EQ(EncodingManager().enabledEncodings(),
              (Encodings{TextEncodings::utf8, TextEncodings::kelRoman}));
    PreferencesStore::standard().setValue(key, QStringLiteral("4"));
    EXPECT_EQ(EncodingManager().enabledEncodings(), EncodingManager::defaultEncodings());
}
} // namespace

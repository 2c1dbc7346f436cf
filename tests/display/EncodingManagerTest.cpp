// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"

#include "display/EncodingManager.h"
#include "platform/preferences/PreferencesStore.h"

#include <QJsonArray>
#include <gtest/gtest.h>

namespace {
using Encodings = EncodingManager::Encodings;

class EncodingManagerTest : public testing::Test
{
protected:
    PreferencesFolder preferences_;
    EncodingManager manager_;
};

TEST_F(EncodingManagerTest, WhatIsEnabledOutlastsTheRun)
{
    manager_.setEnabledEncodings({TextEncodings::utf8, TextEncodings::none, 65536 + 17});
    preferences_.restart();
    EXPECT_EQ(EncodingManager().enabledEncodings(), (Encodings{TextEncodings::utf8, 65536 + 17}));
    manager_.clearAll();
    preferences_.restart();
    EXPECT_TRUE(EncodingManager().enabledEncodings().empty());
}

TEST_F(EncodingManagerTest, WhatIsStoredMayBeDamaged)
{
    const QString key = QStringLiteral("Encodings");
    PreferencesStore::standard().setValue(
        key, QJsonArray{4, -1, 4, QStringLiteral("1"), 1.5, 4294967295.0, 4294967300.0, 7, 30});
    EXPECT_EQ(EncodingManager().enabledEncodings(),
              (Encodings{TextEncodings::utf8, TextEncodings::kelRoman}));
    PreferencesStore::standard().setValue(key, QStringLiteral("4"));
    EXPECT_EQ(EncodingManager().enabledEncodings(), EncodingManager::defaultEncodings());
}
} // namespace

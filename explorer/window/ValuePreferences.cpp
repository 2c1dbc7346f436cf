// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/ValuePreferences.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"

ValuePreferences::ValuePreferences()
{
    const auto observe = [this](const QString &name) {
        return NotificationCenter::defaultCenter().observe(
            name, &PreferencesStore::standard(), [this](const auto &) { Q_EMIT changed(); });
    };
    changes_ = observe(PreferencesStore::didChangeNotification());
    merges_ = observe(PreferencesStore::didMergeNotification());
}

bool ValuePreferences::follows() const
{
    return PreferencesStore::standard().flag(PreferenceKeys::followValues);
}

int ValuePreferences::interval() const
{
    constexpr int shortest = 200;
    constexpr int longest = 60'000;
    return static_cast<int>(std::clamp<qint64>(
        PreferencesStore::standard().integer(PreferenceKeys::followInterval), shortest, longest));
}

bool ValuePreferences::showsSparklines() const
{
    return PreferencesStore::standard().flag(PreferenceKeys::showSparklines);
}

void ValuePreferences::toggleFollow()
{
    PreferencesStore::standard().setFlag(PreferenceKeys::followValues, !follows());
}

void ValuePreferences::toggleSparklines()
{
    PreferencesStore::standard().setFlag(PreferenceKeys::showSparklines, !showsSparklines());
}

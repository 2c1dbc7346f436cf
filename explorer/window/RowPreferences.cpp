// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/RowPreferences.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"

namespace {
constexpr int maxDuration = 3600; // of recent changes, in seconds
} // namespace

RowPreferences::RowPreferences()
    : shown_(preferred())
{
    const auto observe = [this](const QString &name) {
        return NotificationCenter::defaultCenter().observe(name, &PreferencesStore::standard(),
                                                           [this](const auto &) { follow(); });
    };
    changes_ = observe(PreferencesStore::didChangeNotification());
    merges_ = observe(PreferencesStore::didMergeNotification());
}

RowPreferences::Shown RowPreferences::preferred()
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    return {.deviceNames = preferences.flag(PreferenceKeys::showDeviceNames),
            .icons = preferences.flag(PreferenceKeys::showIcons),
            .findingSigns = preferences.flag(PreferenceKeys::showFindingSigns),
            .recentChanges = preferences.flag(PreferenceKeys::markRecentChanges),
            .recentDuration = static_cast<int>(std::clamp<qint64>(
                preferences.integer(PreferenceKeys::recentDuration), 1, maxDuration))};
}

void RowPreferences::follow()
{
    const Shown before = std::exchange(shown_, preferred());
    if (shown_ != before)
        Q_EMIT changed();
}

void RowPreferences::toggleDeviceNames()
{
    PreferencesStore::standard().setFlag(PreferenceKeys::showDeviceNames, !shown_.deviceNames);
}

void RowPreferences::toggleIcons()
{
    PreferencesStore::standard().setFlag(PreferenceKeys::showIcons, !shown_.icons);
}

void RowPreferences::toggleFindingSigns()
{
    PreferencesStore::standard().setFlag(PreferenceKeys::showFindingSigns, !shown_.findingSigns);
}

void RowPreferences::toggleRecentChanges()
{
    PreferencesStore::standard().setFlag(PreferenceKeys::markRecentChanges, !shown_.recentChanges);
}

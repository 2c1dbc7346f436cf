// SPDX-License-Identifier: Apache-2.0
#include "app/ThemeController.h"

#include "platform/preferences/PreferencesStore.h"

namespace {
// Lets Qt follow the same change of the desktop first, where it can.
constexpr int toolkitDelay = 100; // milliseconds
} // namespace

ThemeController::ThemeController(std::optional<Theme> chosen, const QDBusConnection &bus)
    : chosen_(chosen)
    , scheme_(bus)
{
    schemeDelay_.setSingleShot(true);
    schemeDelay_.setInterval(toolkitDelay);
    schemeDelay_.callOnTimeout(this, [this] { apply(); });
    connect(&scheme_, &ColorSchemeSetting::changed, &schemeDelay_, qOverload<>(&QTimer::start));
    observation_ = NotificationCenter::defaultCenter().observe(
        PreferencesStore::didChangeNotification(), &PreferencesStore::standard(),
        [this](const auto &) { apply(); });
    apply();
}

Theme ThemeController::theme() const
{
    if (chosen_)
        return *chosen_;
    return themeNamed(PreferencesStore::standard().string(PreferenceKeys::theme))
        .value_or(Theme::System);
}

void ThemeController::apply()
{
    using Scheme = ColorSchemeSetting::Scheme;
    const Theme theme = this->theme();
    const std::pair wanted(theme, theme == Theme::System ? scheme_.scheme() : Scheme::NoPreference);
    if (applied_ == wanted)
        return;
    applied_ = wanted;
    applyTheme(wanted.first, wanted.second);
}

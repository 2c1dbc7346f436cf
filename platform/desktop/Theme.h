#pragma once

#include "platform/host/ColorSchemeSetting.h"

#include <QPalette>
#include <QString>
#include <optional>

// How the program looks. The system's theme is left as it is; light and dark are our own.
enum class Theme { System, Light, Dark };

std::optional<Theme> themeNamed(const QString &name); // "system", "light", "dark"
// Also while windows are shown. Where the system's theme is not of the scheme that the desktop asks
// for, our own of that scheme takes its place. Also names the icons that stand in for missing ones.
void applyTheme(Theme theme,
                ColorSchemeSetting::Scheme scheme = ColorSchemeSetting::Scheme::NoPreference);
bool isDark(const QPalette &palette);

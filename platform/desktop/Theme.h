// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/host/ColorSchemeSetting.h"

#include <QPalette>
#include <QString>
#include <optional>

// The program's look. System leaves the system's theme alone; light and dark are our own.
enum class Theme { System, Light, Dark };

std::optional<Theme> themeNamed(const QString &name); // "system", "light", "dark"
// Works while windows are shown. If the system's theme does not have the requested scheme, our own
// theme replaces it. Also sets fallbacks for missing icons.
void applyTheme(Theme theme,
                ColorSchemeSetting::Scheme scheme = ColorSchemeSetting::Scheme::NoPreference);
bool isDark(const QPalette &palette);

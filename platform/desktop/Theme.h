#pragma once

#include <QPalette>
#include <QString>
#include <optional>

// How the program looks. The system's theme is left as it is; light and dark are our own.
enum class Theme { System, Light, Dark };

std::optional<Theme> themeNamed(const QString &name); // "system", "light", "dark"
// Before the first window is made. Also names the icons that stand in for missing ones.
void applyTheme(Theme theme);
bool isDark(const QPalette &palette);

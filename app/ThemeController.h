// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/desktop/Theme.h"
#include "platform/host/ColorSchemeSetting.h"
#include "platform/runloop/NotificationCenter.h"

#include <QTimer>

// Applies the theme of the command line, or else of the preferences, and follows the desktop when
// that is the system's.
class ThemeController : public QObject
{
    Q_OBJECT
public:
    // Applies the theme. A chosen one overrides the preferences.
    explicit ThemeController(std::optional<Theme> chosen,
                             const QDBusConnection &bus = QDBusConnection::sessionBus());

private:
    Theme theme() const;
    void apply();

    std::optional<Theme> chosen_;
    ColorSchemeSetting scheme_;
    QTimer schemeDelay_;
    NotificationCenter::Observation observation_;
    std::optional<std::pair<Theme, ColorSchemeSetting::Scheme>> applied_;
};

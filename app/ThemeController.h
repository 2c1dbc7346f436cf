#pragma once

#include "platform/desktop/Theme.h"
#include "platform/host/ColorSchemeSetting.h"
#include "platform/runloop/NotificationCenter.h"

#include <QTimer>

// Keeps the program in the theme that the command line, or else the preferences, ask for, and in
// step with the desktop where that is the system's.
class ThemeController : public QObject
{
    Q_OBJECT
public:
    // Applies the theme. The chosen one, if any, is kept whatever the preferences say.
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

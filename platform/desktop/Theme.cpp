// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/Theme.h"

#include "platform/desktop/DarkStyle.h"

#include <QApplication>
#include <QIcon>
#include <QStyle>
#include <QStyleFactory>

namespace {
struct Colors
{
    QColor window, base, alternateBase, text, disabledText, button, highlight, highlightedText,
        link;
};

QPalette paletteOf(const Colors &colors)
{
    // Qt derives the shades of edges and frames from the colours of button and window.
    QPalette palette(colors.button, colors.window);
    const auto set = [&](std::initializer_list<QPalette::ColorRole> roles, const QColor &color) {
        for (const QPalette::ColorRole role : roles)
            palette.setColor(role, color);
    };
    using P = QPalette;
    set({P::Window}, colors.window);
    set({P::Base, P::ToolTipBase}, colors.base);
    set({P::AlternateBase}, colors.alternateBase);
    set({P::WindowText, P::Text, P::ButtonText, P::ToolTipText}, colors.text);
    set({P::Button}, colors.button);
    set({P::PlaceholderText}, colors.disabledText);
    set({P::Highlight}, colors.highlight);
    set({P::HighlightedText}, colors.highlightedText);
    set({P::Link}, colors.link);
    for (const P::ColorRole role : {P::WindowText, P::Text, P::ButtonText})
        palette.setColor(P::Disabled, role, colors.disabledText);
    return palette;
}

QPalette lightPalette()
{
    return paletteOf({.window = QColor(0xf4, 0xf4, 0xf5),
                      .base = Qt::white,
                      .alternateBase = QColor(0xf7, 0xf8, 0xfa),
                      .text = QColor(0x1d, 0x1f, 0x23),
                      .disabledText = QColor(0x7a, 0x7e, 0x85),
                      .button = QColor(0xef, 0xef, 0xf1),
                      .highlight = QColor(0x2f, 0x6f, 0xb8),
                      .highlightedText = Qt::white,
                      .link = QColor(0x1f, 0x5f, 0xa8)});
}

QPalette darkPalette()
{
    return paletteOf({.window = QColor(0x2b, 0x2d, 0x31),
                      .base = QColor(0x1f, 0x21, 0x24),
                      .alternateBase = QColor(0x25, 0x27, 0x2b),
                      .text = QColor(0xe6, 0xe7, 0xe9),
                      .disabledText = QColor(0x8d, 0x91, 0x99),
                      .button = QColor(0x38, 0x3b, 0x40),
                      .highlight = QColor(0x2f, 0x6a, 0xac),
                      .highlightedText = Qt::white,
                      .link = QColor(0x7a, 0xb4, 0xf5)});
}
void replaceSystem(bool dark)
{
    QApplication::setStyle(dark ? new DarkStyle : QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(dark ? darkPalette() : lightPalette());
}

void restoreSystem(const QString &style)
{
    QApplication::setStyle(QStyleFactory::create(style));
    QApplication::setPalette(QPalette());
}

// Of the system's theme.
Theme themeInstead(ColorSchemeSetting::Scheme scheme)
{
    const bool isSystemDark = isDark(QApplication::palette());
    if (scheme == ColorSchemeSetting::Scheme::Dark && !isSystemDark)
        return Theme::Dark;
    return scheme == ColorSchemeSetting::Scheme::Light && isSystemDark ? Theme::Light
                                                                       : Theme::System;
}

void nameFallbackIcons()
{
    QIcon::setFallbackThemeName(isDark(QApplication::palette()) ? QStringLiteral("vandrel-dark")
                                                                : QStringLiteral("vandrel"));
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths()); // makes icons reload their files
}
} // namespace

std::optional<Theme> themeNamed(const QString &name)
{
    if (name == QLatin1String("system"))
        return Theme::System;
    if (name == QLatin1String("light"))
        return Theme::Light;
    if (name == QLatin1String("dark"))
        return Theme::Dark;
    return std::nullopt;
}

void applyTheme(Theme theme, ColorSchemeSetting::Scheme scheme)
{
    static const QString systemStyle = QApplication::style()->name();
    static bool isReplaced = false;
    if (theme == Theme::System) {
        if (std::exchange(isReplaced, false))
            restoreSystem(systemStyle);
        theme = themeInstead(scheme);
    }
    if (theme != Theme::System) {
        isReplaced = true;
        replaceSystem(theme == Theme::Dark);
    }
    nameFallbackIcons();
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

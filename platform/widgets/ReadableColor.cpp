// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ReadableColor.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double minContrast = 4.5;
constexpr float precision = 1.0F / 512;

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QColor withLightness(const QColor &color, float lightness)
{
    const float hue = std::max(color.hslHueF(), 0.0F); // grey has no hue
    return QColor::fromHslF(hue, color.hslSaturationF(), lightness)
        .rgb(); // rounded as when painted
}

bool isReadable(const QColor &color, const QPalette &palette)
{
    return contrast(color, palette.color(QPalette::Base)) >= minContrast &&
           contrast(color, palette.color(QPalette::AlternateBase)) >= minContrast;
}
} // namespace

double contrast(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor paleColor(const QColor &color, const QColor &background)
{
    constexpr float part = 0.65F;
    const auto mix = [](float a, float b) { return a * part + b * (1 - part); };
    const QColor pale = QColor::fromRgbF(mix(color.redF(), background.redF()),
                                         mix(color.greenF(), background.greenF()),
                                         mix(color.blueF(), background.blueF()));
    return contrast(pale, background) >= minContrast ? pale : color;
}

QColor readableColor(const QColor &color, const QPalette &palette)
{
    if (isReadable(color, palette))
        return color;
    const QColor base = palette.color(QPalette::Base);
    // Black or white, whichever has more contrast.
    float unreadable = color.lightnessF();
    float readable = contrast(base, Qt::black) > contrast(base, Qt::white) ? 0.0F : 1.0F;
    while (std::abs(readable - unreadable) > precision) {
        const float middle = (readable + unreadable) / 2;
        (isReadable(withLightness(color, middle), palette) ? readable : unreadable) = middle;
    }
    return withLightness(color, readable);
}

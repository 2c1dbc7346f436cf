// SPDX-License-Identifier: Apache-2.0
#include "display/views/FindingIcons.h"

#include "display/views/EntryColors.h"
#include "platform/widgets/ReadableColor.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <map>

namespace {
using FindingIcons::Kind;

constexpr int size = 16;
constexpr QRectF alone(3, 3, 10, 10);
constexpr QRectF corner(7.5, 7.5, 8, 8);

QPainterPath shape(Severity severity, const QRectF &place)
{
    QPainterPath path;
    if (severity == Severity::Error) {
        path.addEllipse(place);
    } else if (severity == Severity::Warning) {
        path.addPolygon(QPolygonF(
            {QPointF(place.center().x(), place.top()), place.bottomRight(), place.bottomLeft()}));
        path.closeSubpath();
    } else {
        path.addRect(place.adjusted(0.5, 0.5, -0.5, -0.5));
    }
    return path;
}

void drawSign(QPainter &painter, Severity severity, Kind kind, const QRectF &place,
              const QColor &color)
{
    constexpr qreal outline = 1.4;
    constexpr qreal halo = 2.5; // keeps it apart from the icon
    const QPainterPath path = shape(severity, place);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.strokePath(path, QPen(Qt::black, halo, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (kind == Kind::Own)
        painter.fillPath(path, color);
    else
        painter.strokePath(shape(severity, place.adjusted(0.7, 0.7, -0.7, -0.7)),
                           QPen(color, outline, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

QPixmap draw(const QIcon &base, QIcon::Mode mode, Severity severity, Kind kind, const QColor &color,
             int scale)
{
    QPixmap pixmap(size * scale, size * scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!base.isNull())
        base.paint(&painter, pixmap.rect(), Qt::AlignCenter, mode);
    painter.scale(scale, scale);
    drawSign(painter, severity, kind, base.isNull() ? alone : corner, color);
    painter.end();
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}
} // namespace

QColor FindingIcons::color(Severity severity)
{
    const QPalette palette = QGuiApplication::palette();
    switch (severity) {
    case Severity::Error:
        return readableColor(EntryColors::colorForTerminatedItem(), palette);
    case Severity::Warning:
        return readableColor(EntryColors::colorForChangedItem(), palette);
    default:
        return paleColor(palette.color(QPalette::Text), palette.color(QPalette::Base));
    }
}

QIcon FindingIcons::icon(Severity severity, Kind kind)
{
    return badged({}, severity, kind);
}

QIcon FindingIcons::badged(const QIcon &base, Severity severity, Kind kind)
{
    constexpr std::size_t maxDrawn = 512; // a new theme draws all of them again
    const QColor selected = QGuiApplication::palette().color(QPalette::HighlightedText);
    using Key = std::tuple<qint64, Severity, Kind, QRgb, QRgb>;
    const Key key{base.isNull() ? 0 : base.cacheKey(), severity, kind, color(severity).rgb(),
                  selected.rgb()};
    static std::map<Key, QIcon> drawn;
    if (drawn.size() > maxDrawn)
        drawn.clear();
    QIcon &icon = drawn[key];
    if (icon.isNull()) {
        for (const int scale : {1, 2, 3}) {
            icon.addPixmap(draw(base, QIcon::Normal, severity, kind, color(severity), scale),
                           QIcon::Normal);
            icon.addPixmap(draw(base, QIcon::Selected, severity, kind, selected, scale),
                           QIcon::Selected);
        }
    }
    return icon;
}

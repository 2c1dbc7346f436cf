// SPDX-License-Identifier: Apache-2.0
#include "display/views/DifferenceIcons.h"

#include "display/views/EntryColors.h"
#include "platform/widgets/ReadableColor.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <map>

namespace {
DifferenceKind kindOfState(RegistryState state)
{
    return state == RegistryStateNew          ? DifferenceKind::Added
           : state == RegistryStateTerminated ? DifferenceKind::Removed
           : state == RegistryStateChanged    ? DifferenceKind::Changed
                                              : DifferenceKind::Same;
}

// In a square of 16.
QPainterPath sign(DifferenceKind kind)
{
    QPainterPath path;
    const auto line = [&path](std::initializer_list<QPointF> points) {
        path.moveTo(*points.begin());
        for (const QPointF &point : points)
            path.lineTo(point);
    };
    switch (kind) {
    case DifferenceKind::Added:
        line({{8, 3}, {8, 13}});
        line({{3, 8}, {13, 8}});
        break;
    case DifferenceKind::Removed:
        line({{3, 8}, {13, 8}});
        break;
    case DifferenceKind::Moved:
        line({{2.5, 8}, {13, 8}});
        line({{9, 4}, {13, 8}, {9, 12}});
        break;
    case DifferenceKind::Renamed: // a label
        line({{2.5, 5}, {9.5, 5}, {13.5, 8}, {9.5, 11}, {2.5, 11}, {2.5, 5}});
        break;
    case DifferenceKind::Changed: // a pencil
        line({{3, 13}, {3.8, 10}, {10.5, 3.3}, {12.7, 5.5}, {6, 12.2}, {3, 13}});
        break;
    case DifferenceKind::Same:
        break;
    }
    return path;
}

QPixmap draw(DifferenceKind kind, const QColor &color, int scale)
{
    constexpr qreal strokeWidth = 1.8;
    QPixmap pixmap(DifferenceIcons::size * scale, DifferenceIcons::size * scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(QPen(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(sign(kind));
    painter.end();
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}
} // namespace

QColor DifferenceIcons::color(DifferenceKind kind)
{
    const QPalette palette = QGuiApplication::palette();
    switch (kind) {
    case DifferenceKind::Same:
        return palette.color(QPalette::Text);
    case DifferenceKind::Added:
        return readableColor(EntryColors::colorForNewItem(), palette);
    case DifferenceKind::Removed:
        return readableColor(EntryColors::colorForTerminatedItem(), palette);
    default:
        return readableColor(EntryColors::colorForChangedItem(), palette);
    }
}

QIcon DifferenceIcons::icon(DifferenceKind kind)
{
    if (kind == DifferenceKind::Same)
        return {};
    const QColor selected = QGuiApplication::palette().color(QPalette::HighlightedText);
    const auto key = std::tuple(kind, color(kind).rgb(), selected.rgb());
    static std::map<std::tuple<DifferenceKind, QRgb, QRgb>, QIcon> drawn;
    QIcon &icon = drawn[key];
    if (icon.isNull()) {
        for (const int scale : {1, 2, 3}) {
            icon.addPixmap(draw(kind, color(kind), scale), QIcon::Normal);
            icon.addPixmap(draw(kind, selected, scale), QIcon::Selected);
        }
    }
    return icon;
}

QIcon DifferenceIcons::ofState(RegistryState state)
{
    return icon(kindOfState(state));
}

QColor DifferenceIcons::colorOfState(RegistryState state)
{
    return color(kindOfState(state));
}

// SPDX-License-Identifier: Apache-2.0
#include "explorer/EntryIcons.h"

#include "platform/widgets/ReadableColor.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

namespace {
constexpr auto drawnColor = "#3d4550"; // in the files
} // namespace

EntryIcons &EntryIcons::shared()
{
    static EntryIcons icons;
    return icons;
}

EntryIcons::Colors EntryIcons::currentColors()
{
    const QPalette palette = QGuiApplication::palette();
    return {paleColor(palette.color(QPalette::Text), palette.color(QPalette::Base)).rgb(),
            palette.color(QPalette::HighlightedText).rgb()};
}

QIcon EntryIcons::icon(EntryKind kind)
{
    if (const Colors colors = currentColors(); colors != colors_) {
        colors_ = colors;
        icons_.fill({});
    }
    QIcon &icon = icons_[static_cast<std::size_t>(kind)];
    if (icon.isNull())
        icon = draw(kind);
    return icon;
}

QByteArray EntryIcons::drawing(EntryKind kind)
{
    QFile file(QStringLiteral(":/images/Entry-%1.svg").arg(QLatin1String(entryKindName(kind))));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Image %s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
    return file.readAll();
}

QIcon EntryIcons::draw(EntryKind kind) const
{
    const QByteArray drawing = EntryIcons::drawing(kind);
    QIcon icon;
    for (const auto &[mode, color] :
         {std::pair(QIcon::Normal, colors_.plain), std::pair(QIcon::Selected, colors_.selected)}) {
        QSvgRenderer renderer(
            QByteArray(drawing).replace(drawnColor, QColor(color).name().toLatin1()));
        for (const int scale : {1, 2, 3}) {
            QPixmap pixmap(size * scale, size * scale);
            pixmap.fill(Qt::transparent);
            QPainter painter(&pixmap);
            renderer.render(&painter);
            painter.end();
            pixmap.setDevicePixelRatio(scale);
            icon.addPixmap(pixmap, mode);
        }
    }
    return icon;
}

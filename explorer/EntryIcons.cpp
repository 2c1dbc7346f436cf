// SPDX-License-Identifier: Apache-2.0
#include "explorer/EntryIcons.h"

#include "platform/widgets/ReadableColor.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

namespace {
// Null if the theme has none of exactly this name: a shorter one would be coloured.
QIcon themeIcon(EntryKind kind)
{
    const QString name = QLatin1String(freedesktopName(kind));
    const QIcon icon = name.isEmpty() ? QIcon() : QIcon::fromTheme(name);
    return icon.name() == name ? icon : QIcon();
}

// Whatever is painted, in one colour.
template<class Paint>
QPixmap drawnIn(QRgb color, int pixels, Paint paint)
{
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(painter, pixmap.rect());
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), QColor(color));
    return pixmap;
}
} // namespace

EntryIcons &EntryIcons::shared()
{
    static EntryIcons icons;
    return icons;
}

EntryIcons::Style EntryIcons::currentStyle()
{
    const QPalette palette = QGuiApplication::palette();
    return {QIcon::themeName(),
            paleColor(palette.color(QPalette::Text), palette.color(QPalette::Base)).rgb(),
            palette.color(QPalette::HighlightedText).rgb()};
}

QIcon EntryIcons::icon(EntryKind kind)
{
    if (const Style style = currentStyle(); style != style_) {
        style_ = style;
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
    const QIcon themed = themeIcon(kind);
    QSvgRenderer own(themed.isNull() ? drawing(kind) : QByteArray());
    const auto paint = [&](QPainter &painter, const QRect &rect) {
        if (themed.isNull())
            own.render(&painter);
        else
            themed.paint(&painter, rect);
    };
    QIcon icon;
    for (const auto &[mode, color] :
         {std::pair(QIcon::Normal, style_.plain), std::pair(QIcon::Selected, style_.selected)}) {
        for (const int scale : {1, 2, 3}) {
            QPixmap pixmap = drawnIn(color, size * scale, paint);
            pixmap.setDevicePixelRatio(scale);
            icon.addPixmap(pixmap, mode);
        }
    }
    return icon;
}

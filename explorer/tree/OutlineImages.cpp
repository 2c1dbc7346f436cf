// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/OutlineImages.h"

#include "platform/desktop/Theme.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

namespace {
constexpr std::array names{"Outline-I",
                           "Outline-L",
                           "Outline-T",
                           "Outline-Leaf",
                           "OutlineSelectionPath-I",
                           "OutlineSelectionPath-L",
                           "OutlineSelectionPath-TDown",
                           "OutlineSelectionPath-TRight",
                           "OutlineSelectionPath-Leaf"};
constexpr int middle = 12; // of a picture, where its arm is
} // namespace

OutlineImages &OutlineImages::shared()
{
    static OutlineImages light(false);
    static OutlineImages dark(true);
    return isDark(QGuiApplication::palette()) ? dark : light; // the theme may change
}

OutlineImages::OutlineImages(bool isDark)
{
    for (std::size_t i = 0; i < count; ++i) {
        QFile file(QStringLiteral(":/images/%1.svg").arg(nameOf(static_cast<Image>(i), isDark)));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Image %s: %s", qUtf8Printable(file.fileName()),
                   qUtf8Printable(file.errorString()));
        pictures_[i] = file.readAll();
    }
}

QString OutlineImages::nameOf(Image image, bool isDark)
{
    const QString name = QString::fromLatin1(names[image]);
    return isDark && image >= SelectionPathI ? name + QLatin1String("-Dark") : name;
}

QImage OutlineImages::render(Image image, const QSize &size, qreal scale) const
{
    QSvgRenderer renderer(pictures_[image]);
    renderer.setViewBox(QRect(0, middle - size.height() / 2, size.width(), size.height()));
    QImage rendered((QSizeF(size) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    rendered.fill(Qt::transparent);
    rendered.setDevicePixelRatio(scale);
    QPainter painter(&rendered);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(size)));
    return rendered;
}

void OutlineImages::draw(QPainter &painter, Image image, const QRect &place)
{
    Rendering &rendering = renderings_[image];
    const qreal scale = painter.device()->devicePixelRatioF();
    if (rendering.size != place.size() || rendering.scale != scale)
        rendering = {place.size(), scale, render(image, place.size(), scale)};
    painter.drawImage(place.topLeft(), rendering.image);
}

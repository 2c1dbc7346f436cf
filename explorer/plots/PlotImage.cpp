// SPDX-License-Identifier: Apache-2.0
#include "explorer/plots/PlotImage.h"

#include "explorer/plots/PlotPainter.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

namespace {
constexpr int imageWidth = 1000;
constexpr int imagePlotHeight = 480;
constexpr int imageMargin = 8;

QPalette lightPalette()
{
    QPalette palette(Qt::white);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}
} // namespace

bool PlotImage::write(const Plots::Lines &lines, qint64 from, qint64 until, Format format,
                      QIODevice &device)
{
    const QRect area(0, imageMargin, imageWidth, imagePlotHeight);
    const PlotPainter plot(lines, from, until, {lightPalette(), QGuiApplication::font()}, area);
    const int legendHeight = static_cast<int>(lines.size()) * plot.legendLineHeight();
    const QSize size(imageWidth, imagePlotHeight + legendHeight + 3 * imageMargin);
    const auto paint = [&](QPainter &painter) {
        painter.fillRect(QRect({0, 0}, size), Qt::white);
        plot.paint(painter);
        plot.paintLegend(painter, {0, imagePlotHeight + 2 * imageMargin, imageWidth, legendHeight});
    };
    if (format == Format::Svg) {
        QSvgGenerator generator;
        generator.setOutputDevice(&device);
        generator.setSize(size);
        generator.setViewBox(QRect({0, 0}, size));
        QPainter painter;
        if (!painter.begin(&generator))
            return false;
        paint(painter);
        return painter.end();
    }
    constexpr int scale = 2;
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    {
        QPainter painter(&image);
        paint(painter);
    }
    return image.save(&device, "PNG");
}

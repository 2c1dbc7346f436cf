// SPDX-License-Identifier: Apache-2.0
#include "display/views/Sparkline.h"

#include "activity/PlotLine.h"
#include "platform/widgets/OutlineRowDelegate.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionViewItem>

namespace {
constexpr int sparklineGap = 8; // to the text
constexpr int characters = 14;
constexpr qint64 shownTime = 60LL * 1'000'000;

int width(const QFontMetrics &metrics)
{
    return characters * metrics.averageCharWidth();
}
} // namespace

int Sparkline::room(const QFontMetrics &metrics)
{
    return sparklineGap + width(metrics);
}

QRect Sparkline::place(const QStyleOptionViewItem &cell)
{
    const int margin = OutlineRowDelegate::verticalMargin;
    const QRect logical(cell.rect.right() - width(cell.fontMetrics) - margin,
                        cell.rect.top() + margin + 1, width(cell.fontMetrics),
                        cell.fontMetrics.height() - 2);
    return QStyle::visualRect(cell.direction, cell.rect, logical);
}

void Sparkline::paint(QPainter &painter, const QRect &place, const PlotLine &line,
                      const QColor &color)
{
    const PlotSeries &series = line.series;
    if (series.isEmpty())
        return;
    const qint64 until = series.lastTime();
    const auto summary = series.summary(line.reading, until - shownTime, until);
    if (!summary)
        return;
    const double span = summary->maximum - summary->minimum;
    const auto point = [&](const PlotSeries::Point &its) {
        const double share = span > 0 ? (its.amount - summary->minimum) / span : 0;
        const double age = static_cast<double>(until - its.time) / static_cast<double>(shownTime);
        return QPointF(place.right() - age * place.width(),
                       place.bottom() - share * place.height());
    };
    painter.save();
    painter.setClipRect(place.adjusted(0, -1, 2, 2), Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.2));
    for (const auto &stroke :
         series.strokes(line.reading, until - shownTime, until, place.width())) {
        QPolygonF polygon;
        for (const auto &its : stroke)
            polygon.append(point(its));
        if (polygon.size() == 1)
            painter.drawPoint(polygon.front());
        else
            painter.drawPolyline(polygon);
    }
    painter.restore();
}

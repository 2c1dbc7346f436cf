// SPDX-License-Identifier: Apache-2.0
#include "explorer/plots/PlotPainter.h"

#include "platform/host/BootClock.h"

#include <QCoreApplication>
#include <QPainter>
#include <cmath>

namespace {
constexpr int margin = 6;
constexpr int gapOfStrips = 16;
constexpr int markLength = 4;
constexpr qint64 second = 1'000'000;

struct Colors
{
    const char *onLight;
    const char *onDark;
};
// At least 4.5 to 1 on their backgrounds, and apart for those who do not tell red from green.
constexpr Colors colors[Plots::maxLines] = {
    {"#0068b3", "#5eb6f0"}, {"#b84700", "#ff9a4d"}, {"#00755a", "#35d0a0"}, {"#a8327a", "#f5a3cf"},
    {"#6d5200", "#e6cc55"}, {"#5b3fc0", "#b9a6ff"}, {"#00707f", "#55d6e2"}, {"#8c2d2d", "#ff9090"}};

// Between two marks of the time, so that they are so far apart.
qint64 timeStep(qint64 span, int width, int distance)
{
    static constexpr qint64 steps[] = {1,   2,   5,   10,   15,   30,   60,    120,
                                       300, 600, 900, 1800, 3600, 7200, 10800, 21600};
    const qint64 count = std::max(1, width / std::max(1, distance));
    for (const qint64 step : steps) {
        if (step * second * count >= span)
            return step * second;
    }
    return steps[std::size(steps) - 1] * second;
}
} // namespace

QColor PlotPainter::color(const PlotLine &line, const QPalette &palette)
{
    constexpr int middle = 128;
    const Colors &its = colors[static_cast<std::size_t>(line.place) % std::size(colors)];
    const bool isDark = palette.color(QPalette::Base).lightness() < middle;
    return {QLatin1String(isDark ? its.onDark : its.onLight)};
}

double PlotPainter::Strip::y(double amount) const
{
    return rect.bottom() - (amount - least) / (greatest - least) * rect.height();
}

PlotPainter::PlotPainter(const Plots::Lines &lines, qint64 from, qint64 until, Style style,
                         QRect area)
    : from_(from)
    , until_(std::max(until, from + 1))
    , style_(std::move(style))
    , metrics_(style_.font)
    , area_(area)
{
    makeStrips(lines);
    placeStrips();
}

void PlotPainter::makeStrips(const Plots::Lines &lines)
{
    for (const auto &line : lines) {
        const PlotUnit unit(*line);
        const auto same = std::find_if(strips_.begin(), strips_.end(),
                                       [&](const Strip &strip) { return strip.unit == unit; });
        if (same != strips_.end())
            same->lines.push_back(line.get());
        else
            strips_.push_back({.unit = unit, .lines = {line.get()}});
    }
}

void PlotPainter::placeStrips()
{
    const int count = static_cast<int>(strips_.size());
    if (count == 0)
        return;
    const int axis = metrics_.height() + 2 * markLength;
    const int height = (area_.height() - axis - margin - (count - 1) * gapOfStrips) / count;
    int top = area_.top() + margin;
    int labels = 0;
    for (Strip &strip : strips_) {
        strip.rect = {area_.left(), top, area_.width(), std::max(height, 1)};
        top += height + gapOfStrips;
        setRange(strip);
        for (double mark = strip.least; mark <= strip.greatest; mark += strip.step)
            labels =
                std::max(labels, metrics_.horizontalAdvance(strip.unit.mark(mark, strip.step)));
    }
    for (Strip &strip : strips_)
        strip.rect.adjust(labels + 2 * margin, 0, -margin, 0);
}

// Rates start at zero, as their size is what counts; values use the whole height.
void PlotPainter::setRange(Strip &strip) const
{
    std::optional<double> least;
    std::optional<double> greatest;
    for (const PlotLine *const line : strip.lines) {
        const auto summary = line->series.summary(line->reading, from_, until_);
        if (!summary)
            continue;
        const bool isRate = line->reading == PlotSeries::Reading::Rate;
        const double floor = isRate ? std::min(0., summary->minimum) : summary->minimum;
        least = std::min(floor, least.value_or(floor));
        greatest = std::max(summary->maximum, greatest.value_or(summary->maximum));
    }
    if (!least)
        return;
    if (*greatest <= *least) // a flat line, in the middle unless it is at zero
        std::tie(least, greatest) =
            std::pair(*least > 0 ? 0. : *least * 2, *least == 0  ? 1
                                                    : *least > 0 ? *least * 2
                                                                 : 0.);
    constexpr int lines = 3; // of text for a mark
    const int count = std::clamp(strip.rect.height() / (lines * metrics_.height()), 1, 8);
    strip.step = strip.unit.step((*greatest - *least) / count,
                                 std::max(std::abs(*least), std::abs(*greatest)));
    strip.least = std::floor(*least / strip.step) * strip.step;
    strip.greatest = std::ceil(*greatest / strip.step) * strip.step;
}

QRect PlotPainter::plot() const
{
    return strips_.empty() ? QRect() : strips_.front().rect | strips_.back().rect;
}

double PlotPainter::x(qint64 time) const
{
    const QRect rect = plot();
    return rect.left() +
           static_cast<double>(time - from_) / static_cast<double>(until_ - from_) * rect.width();
}

qint64 PlotPainter::timeAt(int x) const
{
    const QRect rect = plot();
    return from_ +
           static_cast<qint64>(static_cast<double>(x - rect.left()) / std::max(1, rect.width()) *
                               static_cast<double>(until_ - from_));
}

QColor PlotPainter::faint() const
{
    constexpr float alpha = 0.22F;
    QColor color = style_.palette.color(QPalette::Text);
    color.setAlphaF(alpha);
    return color;
}

void PlotPainter::paint(QPainter &painter) const
{
    painter.save();
    painter.setFont(style_.font);
    paintTimes(painter);
    for (const Strip &strip : strips_) {
        paintMarks(painter, strip);
        painter.save();
        painter.setClipRect(strip.rect.adjusted(0, -1, 1, 2), Qt::IntersectClip);
        painter.setRenderHint(QPainter::Antialiasing);
        for (const PlotLine *const line : strip.lines)
            paintLine(painter, strip, *line);
        painter.restore();
    }
    painter.restore();
}

void PlotPainter::paintTimes(QPainter &painter) const
{
    if (strips_.empty())
        return;
    const QRect rect = plot();
    const QString format =
        until_ - from_ > 3600 * second ? QStringLiteral("hh:mm") : QStringLiteral("hh:mm:ss");
    const int width = metrics_.horizontalAdvance(QStringLiteral("00:00:00"));
    const qint64 step = timeStep(until_ - from_, rect.width(), 2 * width);
    // Marks are at round times of the wall clock.
    const QDateTime start = BootClock::wallTime(from_);
    const qint64 sinceMidnight = start.time().msecsSinceStartOfDay() * 1000LL;
    for (qint64 time = from_ + (step - sinceMidnight % step) % step; time <= until_; time += step) {
        const int place = qRound(x(time));
        painter.setPen(faint());
        painter.drawLine(place, rect.top(), place, rect.bottom() + markLength);
        const QString text = start.addMSecs((time - from_ + 500) / 1000).toString(format);
        const int left = place - metrics_.horizontalAdvance(text) / 2;
        if (left < rect.left() - width || left + width > area_.right())
            continue;
        painter.setPen(style_.palette.color(QPalette::Text));
        painter.drawText(left, rect.bottom() + markLength + metrics_.ascent() + 1, text);
    }
}

void PlotPainter::paintMarks(QPainter &painter, const Strip &strip) const
{
    const int count = qRound((strip.greatest - strip.least) / strip.step);
    for (int i = 0; i <= count; ++i) {
        const double mark = strip.least + i * strip.step;
        const int place = qRound(strip.y(mark));
        painter.setPen(faint());
        painter.drawLine(strip.rect.left() - markLength, place, strip.rect.right(), place);
        const QString text = strip.unit.mark(mark, strip.step);
        painter.setPen(style_.palette.color(QPalette::Text));
        painter.drawText(strip.rect.left() - margin - metrics_.horizontalAdvance(text),
                         place + metrics_.ascent() / 2 - 1, text);
    }
}

void PlotPainter::paintLine(QPainter &painter, const Strip &strip, const PlotLine &line) const
{
    constexpr double width = 1.6;
    constexpr double dot = 1.5;
    const QColor its = color(line, style_.palette);
    painter.setPen(QPen(its, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(its);
    for (const auto &stroke :
         line.series.strokes(line.reading, from_, until_, strip.rect.width())) {
        QPolygonF polygon;
        for (const auto &[time, amount] : stroke)
            polygon.append({x(time), strip.y(amount)});
        if (polygon.size() == 1)
            painter.drawEllipse(polygon.front(), dot, dot);
        else
            painter.drawPolyline(polygon);
    }
}

// One for the time, then one for each line in the order of the strips.
QStringList PlotPainter::cursorTexts(qint64 time) const
{
    QStringList texts{BootClock::wallTime(time).toString(QStringLiteral("hh:mm:ss.zzz"))};
    for (const Strip &strip : strips_) {
        for (const PlotLine *const line : strip.lines) {
            const auto amount = line->series.amountUntil(time, line->reading);
            texts.append(QStringLiteral("%1 %2  %3")
                             .arg(line->name, line->value.text(),
                                  amount ? strip.unit.text(*amount) : QStringLiteral("–")));
        }
    }
    return texts;
}

void PlotPainter::paintCursor(QPainter &painter, qint64 time) const
{
    if (strips_.empty())
        return;
    const QRect rect = plot();
    const int place = qRound(x(time));
    painter.setPen(style_.palette.color(QPalette::Text));
    painter.drawLine(place, rect.top(), place, rect.bottom());
    const QStringList texts = cursorTexts(time);
    int width = 0;
    for (const QString &text : texts)
        width = std::max(width, metrics_.horizontalAdvance(text));
    const int swatch = metrics_.height() / 2;
    QRect box(place + margin, rect.top() + margin, width + swatch + 3 * margin,
              static_cast<int>(texts.size()) * metrics_.height() + 2 * markLength);
    if (box.right() > rect.right())
        box.moveRight(place - margin);
    if (box.bottom() > area_.bottom())
        box.moveBottom(area_.bottom());
    painter.setFont(style_.font);
    painter.fillRect(box, style_.palette.color(QPalette::ToolTipBase));
    painter.setPen(style_.palette.color(QPalette::Mid));
    painter.drawRect(box);
    QPalette tip = style_.palette;
    tip.setColor(QPalette::Base, style_.palette.color(QPalette::ToolTipBase));
    int top = box.top() + markLength;
    qsizetype row = 0;
    const auto write = [&](int left) {
        painter.setPen(tip.color(QPalette::ToolTipText));
        painter.drawText(left, top + metrics_.ascent(), texts[row++]);
        top += metrics_.height();
    };
    write(box.left() + margin);
    for (const Strip &strip : strips_) {
        for (const PlotLine *const line : strip.lines) {
            painter.fillRect(box.left() + margin, top + (metrics_.height() - swatch) / 2, swatch,
                             swatch, color(*line, tip));
            write(box.left() + 2 * margin + swatch);
        }
    }
}

void PlotPainter::paintLegend(QPainter &painter, QRect area) const
{
    painter.setFont(style_.font);
    int top = area.top();
    const int swatch = metrics_.height() / 2;
    for (const Strip &strip : strips_) {
        for (const PlotLine *const line : strip.lines) {
            painter.fillRect(area.left() + margin, top + (metrics_.height() - swatch) / 2, swatch,
                             swatch, color(*line, style_.palette));
            QString text = line->path + QStringLiteral("  ") + line->value.text();
            if (const auto summary = line->series.summary(line->reading, from_, until_))
                text += QStringLiteral("   ") +
                        QCoreApplication::translate("PlotPainter",
                                                    "minimum %1, mean %2, maximum %3, last %4")
                            .arg(strip.unit.text(summary->minimum), strip.unit.text(summary->mean),
                                 strip.unit.text(summary->maximum), strip.unit.text(summary->last));
            painter.setPen(style_.palette.color(QPalette::Text));
            painter.drawText(
                area.left() + 2 * margin + swatch, top + metrics_.ascent(),
                metrics_.elidedText(text, Qt::ElideMiddle, area.width() - 3 * margin - swatch));
            top += legendLineHeight();
        }
    }
}

// SPDX-License-Identifier: Apache-2.0
#include "activity/PlotSeries.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
using Point = PlotSeries::Point;

double seconds(qint64 microseconds)
{
    return static_cast<double>(microseconds) / 1e6;
}

// Collects the points of one column of pixels.
class Column
{
public:
    void add(const Point &point)
    {
        if (count_++ == 0)
            first_ = least_ = greatest_ = point;
        if (point.amount < least_.amount)
            least_ = point;
        if (point.amount > greatest_.amount)
            greatest_ = point;
        last_ = point;
    }

    void moveTo(PlotSeries::Stroke &stroke)
    {
        if (std::exchange(count_, 0) == 0)
            return;
        const bool isLeastFirst = least_.time < greatest_.time;
        for (const Point &point : {first_, isLeastFirst ? least_ : greatest_,
                                   isLeastFirst ? greatest_ : least_, last_}) {
            if (stroke.empty() || stroke.back().time < point.time)
                stroke.push_back(point);
        }
    }

private:
    int count_ = 0;
    Point first_{};
    Point least_{};
    Point greatest_{};
    Point last_{};
};
} // namespace

void PlotSeries::add(qint64 time, double value)
{
    append({time, value});
}

void PlotSeries::addGap(qint64 time)
{
    const bool isGap = !samples_.empty() && std::isnan(samples_.back().value);
    if (!isGap) // one is enough
        append({time, std::numeric_limits<double>::quiet_NaN()});
}

void PlotSeries::append(Sample sample)
{
    if (!samples_.empty() && sample.time <= samples_.back().time)
        return;
    samples_.push_back(sample);
    while (samples_.size() > maxSamples || samples_.front().time < sample.time - longest)
        samples_.pop_front();
}

std::optional<double> PlotSeries::amountAt(std::size_t index, Reading reading) const
{
    const Sample &sample = samples_[index];
    if (std::isnan(sample.value))
        return std::nullopt;
    if (reading == Reading::Value)
        return sample.value;
    if (index == 0 || std::isnan(samples_[index - 1].value))
        return std::nullopt;
    const Sample &before = samples_[index - 1];
    if (isCounter_ && sample.value < before.value)
        return std::nullopt;
    return (sample.value - before.value) / seconds(sample.time - before.time);
}

std::size_t PlotSeries::indexFrom(qint64 time) const
{
    const auto found =
        std::lower_bound(samples_.begin(), samples_.end(), time,
                         [](const Sample &sample, qint64 at) { return sample.time < at; });
    return static_cast<std::size_t>(found - samples_.begin());
}

std::optional<double> PlotSeries::amountUntil(qint64 time, Reading reading) const
{
    const std::size_t end = indexFrom(time + 1);
    return end == 0 ? std::nullopt : amountAt(end - 1, reading);
}

std::vector<PlotSeries::Stroke> PlotSeries::strokes(Reading reading, qint64 from, qint64 until,
                                                    int columns) const
{
    std::vector<Stroke> strokes;
    Stroke stroke;
    Column column;
    qint64 place = -1; // of the column
    const qint64 width = std::max<qint64>(1, (until - from) / std::max(1, columns));
    const auto endStroke = [&] {
        column.moveTo(stroke);
        if (!stroke.empty())
            strokes.push_back(std::exchange(stroke, {}));
    };
    const std::size_t first = indexFrom(from);
    const std::size_t end = std::min(indexFrom(until + 1) + 1, samples_.size());
    for (std::size_t i = first == 0 ? 0 : first - 1; i < end; ++i) {
        const auto amount = amountAt(i, reading);
        if (!amount) {
            endStroke();
            continue;
        }
        if (const qint64 its = samples_[i].time / width; its != place) {
            column.moveTo(stroke);
            place = its;
        }
        column.add({samples_[i].time, *amount});
    }
    endStroke();
    return strokes;
}

std::optional<PlotSeries::Summary> PlotSeries::summary(Reading reading, qint64 from,
                                                       qint64 until) const
{
    std::optional<Summary> summary;
    double total = 0;
    double weight = 0;
    const std::size_t end = indexFrom(until + 1);
    for (std::size_t i = indexFrom(from); i < end; ++i) {
        const auto amount = amountAt(i, reading);
        if (!amount)
            continue;
        const double its =
            reading == Reading::Rate ? seconds(samples_[i].time - samples_[i - 1].time) : 1;
        total += *amount * its;
        weight += its;
        if (!summary)
            summary = {.minimum = *amount, .mean = 0, .maximum = *amount, .last = 0};
        summary->minimum = std::min(summary->minimum, *amount);
        summary->maximum = std::max(summary->maximum, *amount);
        summary->last = *amount;
    }
    if (summary)
        summary->mean = total / weight;
    return summary;
}

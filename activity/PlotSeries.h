// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>
#include <deque>
#include <optional>
#include <vector>

// A value over time, for at most a day. Times are those of BootClock.
class PlotSeries
{
public:
    enum class Reading : quint8 { Value, Rate }; // per second
    static constexpr qint64 longest = 24LL * 3600 * 1'000'000;
    static constexpr std::size_t maxSamples = 24 * 3600 * 5; // a day of the shortest interval

    struct Point
    {
        qint64 time;
        double amount;
    };
    using Stroke = std::vector<Point>; // without a gap

    struct Summary
    {
        double minimum;
        double mean; // of rates: the whole change divided by the whole time
        double maximum;
        double last;
    };

    // A counter that falls was reset, so that no rate is known.
    explicit PlotSeries(bool isCounter)
        : isCounter_(isCounter)
    {}

    // Ignored unless it is later than the last.
    void add(qint64 time, double value);
    void addGap(qint64 time); // the value could not be read

    bool isEmpty() const { return samples_.empty(); }
    std::size_t size() const { return samples_.size(); }
    qint64 firstTime() const { return samples_.front().time; }
    qint64 lastTime() const { return samples_.back().time; }
    qint64 timeAt(std::size_t index) const { return samples_[index].time; }
    // None: a gap, or no rate is known. A rate is that since the sample before.
    std::optional<double> amountAt(std::size_t index, Reading reading) const;
    // Of the last sample up to then; none: a gap, or there is none.
    std::optional<double> amountUntil(qint64 time, Reading reading) const;
    std::size_t indexFrom(qint64 time) const; // of the first sample at or after it

    // What is to be drawn from one time to another in so many columns of pixels, with the next
    // samples before and after. In each column the first, least, greatest and last are kept.
    std::vector<Stroke> strokes(Reading reading, qint64 from, qint64 until, int columns) const;
    std::optional<Summary> summary(Reading reading, qint64 from, qint64 until) const;

private:
    struct Sample
    {
        qint64 time;
        double value; // not a number: a gap
    };
    void append(Sample sample);

    std::deque<Sample> samples_;
    bool isCounter_;
};

// SPDX-License-Identifier: Apache-2.0
#include "activity/Plots.h"
#include "tests/support/EventLoop.h"
#include "tests/support/FakeRegistryService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

#include <gtest/gtest.h>

using Reading = PlotSeries::Reading;

namespace {
constexpr qint64 second = 1'000'000;

PlotSeries seriesOf(std::initializer_list<double> values, bool isCounter = false)
{
    PlotSeries series(isCounter);
    qint64 time = 0;
    for (const double value : values) {
        time += second;
        if (value < 0)
            series.addGap(time);
        else
            series.add(time, value);
    }
    return series;
}

std::string strokes(const PlotSeries &series, Reading reading, int columns = 1000)
{
    std::string text;
    for (const auto &stroke : series.strokes(reading, 0, 1000 * second, columns)) {
        text += text.empty() ? "" : " | ";
        for (const auto &point : stroke)
            text += (text.empty() || text.back() == ' ' ? "" : " ") +
                    std::to_string(static_cast<int>(point.amount));
    }
    return text;
}

TEST(PlotSeries, GivesValuesAndRatesWithGaps)
{
    const PlotSeries counter = seriesOf({10, 30, -1, -1, 50, 90, 5, 8}, true);
    EXPECT_EQ(strokes(counter, Reading::Value), "10 30 | 50 90 5 8");
    EXPECT_EQ(strokes(counter, Reading::Rate), "20 | 40 | 3"); // it was reset once
    EXPECT_EQ(strokes(seriesOf({9, 4}), Reading::Rate), "-5");

    const auto summary = counter.summary(Reading::Rate, 0, 1000 * second);
    ASSERT_TRUE(summary);
    EXPECT_EQ(summary->minimum, 3);
    EXPECT_EQ(summary->maximum, 40);
    EXPECT_EQ(summary->mean, 21);
    EXPECT_EQ(summary->last, 3);
    EXPECT_FALSE(counter.summary(Reading::Rate, 3 * second, 5 * second));
    EXPECT_EQ(counter.amountUntil(2 * second + 1, Reading::Value), 30);
    EXPECT_EQ(counter.amountUntil(0, Reading::Value), std::nullopt);
}

TEST(PlotSeries, KeepsExtremesWhenItIsReduced)
{
    PlotSeries series(false);
    constexpr int count = 1000;
    for (int i = 0; i < count; ++i)
        series.add((i + 1) * second, i == 437 ? 1000 : i == 438 ? -1000 : i % 3);
    const auto reduced = series.strokes(Reading::Value, 0, count * second, 10);
    ASSERT_EQ(reduced.size(), 1U);
    EXPECT_LE(reduced[0].size(), 4U * 11);
    const auto [least, greatest] =
        std::minmax_element(reduced[0].begin(), reduced[0].end(),
                            [](const auto &a, const auto &b) { return a.amount < b.amount; });
    EXPECT_EQ(least->amount, -1000);
    EXPECT_EQ(greatest->amount, 1000);
    EXPECT_TRUE(std::is_sorted(reduced[0].begin(), reduced[0].end(),
                               [](const auto &a, const auto &b) { return a.time < b.time; }));
}

TEST(PlotSeries, ForgetsWhatIsOlderThanADay)
{
    PlotSeries series(false);
    series.add(second, 1);
    series.add(2 * second, 2);
    series.add(2 * second, 3); // not later
    series.add(PlotSeries::longest + 2 * second, 4);
    EXPECT_EQ(series.size(), 2U);
    EXPECT_EQ(series.firstTime(), 2 * second);
}

// A network link whose values a test sets.
class PlotsTest : public RegistryTest
{
protected:
    void SetUp() override
    {
        tree_.plane("DxService", "Root\n  eth0 : DxNetDevice");
        link_ = tree_["eth0"];
        service_.setKernelPath(link_, path_);
        set(values::number(5), values::number(100));
        capture();
        plots_ = std::make_unique<Plots>(&service_);
        plots_->setInterval(20);
        QObject::connect(plots_.get(), &Plots::sampled, plots_.get(), [this] { ++samples_; });
    }
    void set(const RegistryValue &mtu, const RegistryValue &bytes)
    {
        service_.setProperties(
            link_, values::dictionary({{"mtu", mtu},
                                       {"statistics", values::dictionary({{"rx", bytes}})},
                                       {"stat", values::array({values::number(1), bytes})}}));
    }
    const PlotLine *plot(const QByteArray &value)
    {
        return plots_->add(*find(link_), ValuePath::parse(QString::fromLatin1(value)));
    }
    void sample() // one that begins after now, and one more
    {
        const int before = samples_;
        ASSERT_TRUE(waitFor([&] { return samples_ > before + 1; }));
    }

    const QString path_ = QStringLiteral("/sys/devices/net/eth0");
    FakeRegistry::Node link_ = 0;
    std::unique_ptr<Plots> plots_;
    int samples_ = 0;
};

TEST_F(PlotsTest, CountersAreRatesAtFirst)
{
    const PlotLine *const bytes = plot("statistics/rx");
    const PlotLine *const mtu = plot("mtu");
    const PlotLine *const listed = plot("stat[1]");
    ASSERT_TRUE(bytes && mtu && listed);
    EXPECT_EQ(bytes->reading, Reading::Rate);
    EXPECT_EQ(mtu->reading, Reading::Value);
    sample();
    EXPECT_EQ(bytes->series.amountAt(0, Reading::Value), 100);
    EXPECT_EQ(mtu->series.amountAt(0, Reading::Value), 5);
    EXPECT_EQ(listed->series.amountUntil(listed->series.lastTime(), Reading::Value), 100);
    EXPECT_EQ(plot("mtu"), nullptr); // there already
    plots_->setReading(mtu->number, Reading::Rate);
    EXPECT_EQ(mtu->reading, Reading::Rate);
}

TEST_F(PlotsTest, LineGoesOnWhenTheDeviceComesBack)
{
    const PlotLine *const mtu = plot("mtu");
    sample();
    service_.setKernelPath(link_, QStringLiteral("/sys/elsewhere"));
    sample();
    EXPECT_EQ(mtu->state, PlotLine::State::Absent);
    EXPECT_EQ(mtu->series.amountUntil(mtu->series.lastTime(), Reading::Value), std::nullopt);
    service_.setKernelPath(link_, path_);
    sample();
    EXPECT_EQ(mtu->state, PlotLine::State::Followed);
    EXPECT_EQ(mtu->series.strokes(Reading::Value, 0, mtu->series.lastTime(), 100).size(), 2U);
}

TEST_F(PlotsTest, LineEndsWhenTheNumberBecomesText)
{
    const PlotLine *const mtu = plot("mtu");
    sample();
    set(values::text("unlimited"), values::number(1));
    ASSERT_TRUE(waitFor([&] { return mtu->state == PlotLine::State::NotANumber; }));
    set(values::number(5), values::number(1));
    const int before = service_.samples();
    EXPECT_FALSE(waitFor([&] { return service_.samples() > before; }, 100)); // nothing is left
    EXPECT_EQ(mtu->state, PlotLine::State::NotANumber);
}

TEST_F(PlotsTest, AreAtMostEight)
{
    for (int i = 0; i < 8; ++i)
        EXPECT_NE(plot(QByteArray("a") + QByteArray::number(i)), nullptr);
    EXPECT_TRUE(plots_->isFull());
    EXPECT_EQ(plot("mtu"), nullptr);
    plots_->remove(plots_->lines()[2]->number);
    EXPECT_EQ(plot("mtu")->place, 2); // whose colour is free
}
} // namespace

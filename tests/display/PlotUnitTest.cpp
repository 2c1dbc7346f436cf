// SPDX-License-Identifier: Apache-2.0
#include "display/activity/PlotUnit.h"
#include "display/activity/BlockLine.h"

#include <gtest/gtest.h>

using Reading = PlotSeries::Reading;

namespace {
PlotUnit unitOf(const char *className, const char *key, Reading reading = Reading::Value)
{
    return PlotUnit(ValueUnit::of({QLatin1String(className)}, QLatin1String(key)), reading);
}
PlotUnit bytes(Reading reading = Reading::Rate)
{
    return unitOf("DxNetDevice", "statistics/rx_bytes", reading);
}
} // namespace

TEST(PlotUnit, ShowsAmountsInTheUnitOfTheirNumber)
{
    const PlotUnit none = unitOf("DxNetDevice", "statistics/rx_packets");
    const PlotUnit runtime = unitOf("DxDevice", "power/runtime_active_time", Reading::Rate);
    const struct
    {
        PlotUnit unit;
        double amount;
        const char *text;
    } rows[] = {{bytes(), 0, "0 B/s"},
                {bytes(), 1536, "1.5 KiB/s"},
                {bytes(Reading::Value), 5e9, "4.657 GiB"},
                {none, 1234567, "1,234,567"},
                {none, 0.25, "0.25"},
                {unitOf("DxNetDevice", "statistics/rx_packets", Reading::Rate), 12.5, "12.5/s"},
                {runtime, 250, "25 %"},
                {unitOf("DxNetDevice", "speed"), 2500, "2.5 Gbit/s"}};
    for (const auto &[unit, amount, text] : rows)
        EXPECT_EQ(unit.text(amount).toStdString(), text);
}

TEST(PlotUnit, MarksAreRoundAndApart)
{
    EXPECT_EQ(bytes().step(3e5, 1e6), 500 * 1024);
    EXPECT_EQ(bytes().mark(0x1p20, 0x1p18).toStdString(), "1.00 MiB/s");
    const PlotUnit none = unitOf("DxNetDevice", "statistics/rx_packets");
    EXPECT_EQ(none.step(0.13, 1), 0.2);
    EXPECT_EQ(none.mark(0.4, 0.2).toStdString(), "0.4");
    EXPECT_EQ(none.step(0, 0), 1);
}

TEST(BlockLine, IsAsHighAsTheAmounts)
{
    const std::optional<double> amounts[] = {0, 7, std::nullopt, 3.4};
    EXPECT_EQ(blockLine(amounts).toStdString(), "▁█ ▄");
    const std::optional<double> flat[] = {5, 5};
    EXPECT_EQ(blockLine(flat).toStdString(), "▁▁");
    EXPECT_EQ(blockLine({}), QString());
}

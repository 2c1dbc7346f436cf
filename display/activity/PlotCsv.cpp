// SPDX-License-Identifier: Apache-2.0
#include "display/activity/PlotCsv.h"

#include "display/export/CsvCell.h"
#include "display/export/Utf8Output.h"
#include "platform/host/BootClock.h"

namespace {
using Reading = PlotSeries::Reading;

QString numberText(std::optional<double> amount)
{
    constexpr int digits = 17; // none are lost
    return amount ? QString::number(*amount, 'g', digits) : QString();
}

void add(const PlotLine &line, const QDateTime &start, Utf8Output &output)
{
    const PlotSeries &series = line.series;
    for (std::size_t i = 0; i < series.size(); ++i) {
        const QDateTime time = start.addMSecs(series.timeAt(i) / 1000);
        addCsvLine({time.toString(Qt::ISODateWithMs), line.path, line.value.text(),
                    numberText(series.amountAt(i, Reading::Value)),
                    numberText(series.amountAt(i, Reading::Rate))},
                   output);
    }
}
} // namespace

bool PlotCsv::write(const Plots &plots, QIODevice &device)
{
    Utf8Output output(device);
    const QDateTime start = BootClock::wallTime(0).toUTC(); // of the machine
    output.add(QLatin1String("time,path,property,value,rate\r\n"));
    for (const auto &line : plots.lines())
        add(*line, start, output);
    return output.finish();
}

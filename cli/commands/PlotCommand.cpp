// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/PlotCommand.h"

#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EndSignals.h"
#include "cli/EntryArgument.h"
#include "cli/NearestText.h"
#include "cli/ReadingInterval.h"
#include "cli/RegistrySource.h"
#include "display/activity/BlockLine.h"
#include "display/activity/PlotUnit.h"
#include "platform/host/BootClock.h"

#include <QEventLoop>
#include <QSocketNotifier>
#include <cmath>

namespace {
using Reading = PlotSeries::Reading;
} // namespace

CommandDescription PlotCommand::description() const
{
    return {
        .name = QStringLiteral("plot"),
        .arguments = QStringLiteral("PATH KEY"),
        .argumentKind = ArgumentKind::Path,
        .laterArgumentKind = ArgumentKind::NumberKey,
        .minArguments = 2,
        .maxArguments = 2,
        .summary = tr("Show a number of a device over time"),
        .details =
            tr("KEY is a property such as statistics/rx_bytes; a place in a list follows in "
               "brackets, such as stat[2]. On a terminal that has them, the latest values are a "
               "line of block characters, the lowest of them as low as possible; else each "
               "value has a line of its own. Counters are shown as rates per second. Ends on "
               "SIGINT (Ctrl+C), or when the property is no longer a number; the exit code is 1 "
               "when nothing could be read."),
        .options = {{QStringLiteral("value"), {}, tr("Show the value of a counter.")},
                    {QStringLiteral("rate"), {}, tr("Show the rate per second of any number.")},
                    {QStringLiteral("interval"), QStringLiteral("SECONDS"),
                     tr("The time between two readings: 1 unless you set it, from 0.2 to 60.")},
                    {QStringLiteral("for"), QStringLiteral("SECONDS"), tr("End after this time.")}},
        .examples = {{QStringLiteral("plot eth0 statistics/rx_bytes"),
                      tr("What a network interface receives")},
                     {QStringLiteral("plot hwmon0 temp1_input --interval 5"), tr("A temperature")},
                     {QStringLiteral("plot sda 'stat[2]' --for 60 --format ndjson"),
                      tr("The sectors that are read, for a script, for a minute")}},
        .isPaged = false};
}

ExitCode PlotCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    constexpr double longest = 2e6; // seconds
    if (source.isSnapshot())
        throw CommandError{tr("Values in a snapshot do not change.")};
    if (input.isSet("value") && input.isSet("rate"))
        throw CommandError{tr("--value and --rate exclude each other."), ExitCode::WrongUsage};
    const auto interval = readingInterval(input);
    const auto seconds = input.number("for", longest);
    TavDataStore &store = source.store(RegistrySource::Need::Structure);
    output.describe(store);
    TavRegistryEntry &entry = entryAt(input.arguments().value(0), store);
    TavRegistryEntry *const entries[] = {&entry};
    source.readWhole(entries);
    const ValuePath value = ValuePath::parse(input.arguments().value(1));
    check(entry, value);
    drawsBlocks_ = output.isText() && output.terminal().isTerminal && output.terminal().isUtf8;

    Plots plots(&source.service());
    plots.setInterval(static_cast<int>(interval.count()));
    const PlotLine *const line = plots.add(entry, value);
    if (!line)
        throw CommandError{tr("The kernel has no folder for %1.").arg(input.arguments().value(0))};
    if (input.isSet("value") || input.isSet("rate"))
        plots.setReading(line->number, input.isSet("rate") ? Reading::Rate : Reading::Value);
    follow(plots, seconds, output);
    return written_ > 0 ? ExitCode::Found : ExitCode::Nothing;
}

TavRegistryEntry &PlotCommand::entryAt(const QString &path, TavDataStore &store)
{
    const EntryArgument chosen(store, path);
    return *chosen.entries().front();
}

// What is read only on request may be a number, too.
void PlotCommand::check(TavRegistryEntry &entry, const ValuePath &value)
{
    const auto table = entry.table().members();
    const RegistryValue now = value.in(table);
    const RegistryValue unread = ValuePath::parse(QStringLiteral("DxUnreadAttributes")).in(table);
    const bool isUnread =
        std::any_of(unread.members().begin(), unread.members().end(),
                    [&](const auto &member) { return member.key.toOwner() == value.keyPath(); });
    if (now.type() == RegistryValue::Type::Number || (now.isNone() && isUnread))
        return;
    if (!now.isNone())
        throw CommandError{tr("%1 is not a number.").arg(value.text())};
    const QString nearest = NearestText::among(ValuePath::ofNumbers(entry.table()), value.text());
    throw CommandError{
        nearest.isNull()
            ? tr("There is no property %1.").arg(value.text())
            : tr("There is no property %1. Did you mean %2?").arg(value.text(), nearest)};
}

void PlotCommand::follow(Plots &plots, std::optional<double> seconds, CommandOutput &output)
{
    const EndSignals endSignals;
    QEventLoop loop;
    const QSocketNotifier ended(endSignals.descriptor(), QSocketNotifier::Read);
    QObject::connect(&ended, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    QTimer end;
    end.setSingleShot(true);
    QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    if (seconds)
        end.start(std::chrono::milliseconds(std::llround(*seconds * 1000)));
    std::optional<CommandError> error;
    QObject::connect(&plots, &Plots::sampled, &loop, [&] {
        const PlotLine &line = *plots.lines().front();
        try {
            write(line, output);
        } catch (const CommandError &its) {
            error = its;
        }
        if (error || line.isOver())
            loop.quit();
    });
    loop.exec();
    const PlotLine &line = *plots.lines().front();
    if (drawsBlocks_ && written_ > 0)
        output.endLine();
    if (error)
        throw *error;
    if (line.state == PlotLine::State::NotANumber)
        throw CommandError{tr("%1 is no longer a number.").arg(line.value.text())};
    if (line.state == PlotLine::State::NoAnswer)
        throw CommandError{tr("%1 does not answer.").arg(line.value.text())};
}

void PlotCommand::write(const PlotLine &line, CommandOutput &output)
{
    const PlotSeries &series = line.series;
    for (std::size_t i = series.indexFrom(lastTime_ + 1); i < series.size(); ++i) {
        lastTime_ = series.timeAt(i);
        written_ += series.amountAt(i, Reading::Value) ? 1 : 0;
        if (!output.isText())
            writeJson(line, i, output);
        else if (!drawsBlocks_)
            writeText(line, i, output);
    }
    if (drawsBlocks_ && !series.isEmpty())
        drawBlocks(line, output);
    output.flush();
}

// Over the line that was drawn before.
void PlotCommand::drawBlocks(const PlotLine &line, CommandOutput &output)
{
    constexpr int usualWidth = 80;
    constexpr int amountWidth = 14;
    const PlotSeries &series = line.series;
    const PlotUnit unit(line);
    const int width = output.terminal().columns > 0 ? output.terminal().columns : usualWidth;
    const QString name = line.value.text() + QStringLiteral("  ");
    const auto room =
        static_cast<std::size_t>(std::max<qsizetype>(1, width - name.size() - amountWidth - 3));
    std::vector<std::optional<double>> amounts;
    for (std::size_t i = series.size() - std::min(series.size(), room); i < series.size(); ++i)
        amounts.push_back(series.amountAt(i, line.reading));
    const auto last = amounts.back();
    output.addTrusted(u"\r");
    output.add(name, TextRole::Key);
    output.addTrusted(blockLine(amounts));
    output.add(QStringLiteral("  ") +
               (last ? unit.text(*last) : QString()).leftJustified(amountWidth, u' ', true));
}

void PlotCommand::writeText(const PlotLine &line, std::size_t index, CommandOutput &output)
{
    const bool isGap = !line.series.amountAt(index, Reading::Value);
    const auto amount = line.series.amountAt(index, line.reading);
    if (!amount && !isGap) // a rate needs two values
        return;
    const QDateTime time = BootClock::wallTime(line.series.timeAt(index));
    output.add(time.toString(QStringLiteral("hh:mm:ss.zzz  ")));
    output.add(amount ? PlotUnit(line).text(*amount) : QStringLiteral("-"));
    output.endLine();
}

void PlotCommand::writeJson(const PlotLine &line, std::size_t index, CommandOutput &output)
{
    output.addResult([&](JsonWriter &json) {
        json.member(QLatin1String("time"), BootClock::wallTime(line.series.timeAt(index)).toUTC());
        for (const auto &[name, reading] :
             {std::pair("value", Reading::Value), std::pair("rate", Reading::Rate)}) {
            const auto amount = line.series.amountAt(index, reading);
            if (!amount)
                continue;
            json.key(QLatin1String(name));
            json.number(*amount);
        }
    });
}

// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/WatchCommand.h"

#include "activity/PropertyChanges.h"
#include "activity/RawText.h"
#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EndSignals.h"
#include "cli/EntryArgument.h"
#include "cli/EntrySummary.h"
#include "cli/ReadingInterval.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "cli/commands/FindCommand.h"
#include "model/linux/HostEvents.h"
#include "model/linux/UdevDatabase.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <poll.h>

using namespace RegistryNames;

namespace {
using namespace std::chrono_literals;
using Action = DeviceEvent::Action;

const QString timeFormat = QStringLiteral("hh:mm:ss.zzz  ");
constexpr auto settleTime = 30ms;    // without an event, before the registry is read
constexpr auto longestDelay = 300ms; // of an event, in a flood of them

const char *wordOf(const DeviceChange &change)
{
    switch (change.action) {
    case Action::Add:
        return "appeared";
    case Action::Remove:
        return "gone";
    case Action::Bind:
        return "bound";
    case Action::Unbind:
        return "unbound";
    case Action::Move:
        return change.isRename() ? "renamed" : "moved";
    case Action::Change:
        break;
    }
    return "changed";
}

TextRole roleOf(Action action)
{
    switch (action) {
    case Action::Add:
        return TextRole::New;
    case Action::Remove:
        return TextRole::Gone;
    default:
        return TextRole::Changed;
    }
}

enum class Woken : quint8 { ByEvent, ByTime, ByEnd };

Woken wait(int events, int endSignals, std::chrono::milliseconds timeout)
{
    pollfd descriptors[] = {{events, POLLIN, 0}, {endSignals, POLLIN, 0}};
    const int count = poll(descriptors, 2, static_cast<int>(timeout.count()));
    if (count < 0 && errno != EINTR)
        throw CommandError{QString::fromUtf8(std::strerror(errno))};
    if (count > 0 && descriptors[1].revents != 0)
        return Woken::ByEnd;
    return count > 0 && descriptors[0].revents != 0 ? Woken::ByEvent : Woken::ByTime;
}
} // namespace

CommandDescription WatchCommand::description() const
{
    return {
        .name = QStringLiteral("watch"),
        .arguments = tr("[PATH]"),
        .argumentKind = ArgumentKind::Path,
        .maxArguments = 1,
        .summary = tr("Print a line for each device that appears, goes or changes"),
        .details =
            tr("With a path: for this device and those below it. Ends on SIGINT (Ctrl+C); the "
               "exit code is 1 when nothing happened. When the kernel reports more than can "
               "be read in time, the line \"lost\" follows, and what was missed is found by "
               "comparing. A time is that of the kernel's message. With a path and "
               "--properties, the values of that device are also read again and again, because "
               "most change without a message."),
        .options = {{QStringLiteral("where"), QStringLiteral("EXPRESSION"),
                     tr("Only devices that satisfy a filter expression, before or after."),
                     ArgumentKind::Expression},
                    {QStringLiteral("properties"),
                     {},
                     tr("Print the properties that differ, with the old and the new value.")},
                    {QStringLiteral("interval"), QStringLiteral("SECONDS"),
                     tr("The time between two readings of the values: 1 unless you set it, from "
                        "0.2 to 60.")},
                    {QStringLiteral("for"), QStringLiteral("SECONDS"), tr("End after this time.")}},
        .examples = {{QStringLiteral("watch"), tr("What is plugged in and out")},
                     {QStringLiteral("watch --where 'class ~ DxBlock' --for 60 --format ndjson"),
                      tr("Disks, for a script, for a minute")},
                     {QStringLiteral("watch eth0 --properties"),
                      tr("What changes at a network interface")}},
        .isPaged = false};
}

ExitCode WatchCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    constexpr double longest = 1e9; // seconds
    if (!source.isRunningKernel())
        throw CommandError{tr("Only the registry of the running kernel can be watched.")};
    const auto seconds = input.number("for", longest);
    if (input.isSet("where"))
        filter_ = FindCommand::parse(input.value("where"));
    showsProperties_ = input.isSet("properties");
    interval_ = readingInterval(input);
    const EndSignals endSignals;
    // Before the first reading, so that nothing is missed.
    const auto events = HostEvents::open(UdevDatabase(source.sysfs().toUtf8()).isDaemonRunning());
    if (!events)
        throw CommandError{tr("The kernel's messages cannot be received.")};
    using Need = RegistrySource::Need;
    TavDataStore &store =
        source.store(filter_ || showsProperties_ ? Need::Properties : Need::Structure);
    output.describe(store);
    choose(input.arguments().value(0), store);
    changes_.emplace(picture(store));
    if (showsProperties_)
        choosePolled(input.arguments().value(0), store);
    polled_.poll(source.service());
    std::fprintf(stderr, "%s\n", qUtf8Printable(tr("Watching. End with Ctrl+C.")));
    std::optional<Clock::time_point> end;
    if (seconds)
        end = Clock::now() +
              std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*seconds));
    follow(*events, endSignals.descriptor(), source, end, output);
    return reported_ > 0 ? ExitCode::Found : ExitCode::Nothing;
}

void WatchCommand::choose(const QString &path, TavDataStore &store)
{
    if (path.isNull())
        return;
    const EntryArgument chosen(store, path);
    for (const TavRegistryEntry *const entry : chosen.entries()) {
        const QString top = EntrySummary::path(*entry, servicePlane);
        if (entry->isRegistryRoot() || top == servicePlane + QStringLiteral(":/"))
            tops_.clear();
        else
            tops_.append(top);
    }
}

void WatchCommand::choosePolled(const QString &path, TavDataStore &store)
{
    if (path.isNull())
        return;
    const DevicePicture devices = picture(store);
    const EntryArgument chosen(store, path);
    for (const TavRegistryEntry *const entry : chosen.entries()) {
        if (const auto *const device = devices.at(entry->kernelPath()))
            polled_.add(entry->kernelPath(), *device);
    }
}

void WatchCommand::poll(RegistrySource &source, CommandOutput &output)
{
    for (const DeviceChange &change : polled_.poll(source.service()))
        write(change, output);
    output.flush();
}

DevicePicture WatchCommand::picture(TavDataStore &store) const
{
    return {store, filter_ ? &*filter_ : nullptr};
}

void WatchCommand::follow(DeviceEventSource &events, int endSignals, RegistrySource &source,
                          std::optional<Clock::time_point> end, CommandOutput &output)
{
    std::vector<DeviceChanges::Message> received;
    Clock::time_point first;
    Clock::time_point nextPoll = Clock::now() + interval_;
    bool isLost = false;
    bool isEnd = false;
    while (!isEnd) {
        const bool isPending = !received.empty() || isLost;
        auto timeout = std::chrono::milliseconds(isPending ? settleTime : 1h);
        if (!polled_.isEmpty())
            timeout =
                std::clamp(std::chrono::ceil<std::chrono::milliseconds>(nextPoll - Clock::now()),
                           std::chrono::milliseconds(0), timeout);
        if (end)
            timeout = std::clamp(std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now()),
                                 std::chrono::milliseconds(0), timeout);
        const Woken woken = wait(events.descriptor(), endSignals, timeout);
        if (woken == Woken::ByEvent) {
            if (!isPending)
                first = Clock::now();
            isLost = !receive(events, received) || isLost;
        }
        isEnd = woken == Woken::ByEnd || (end && Clock::now() >= *end);
        if (!polled_.isEmpty() && !isPending && woken == Woken::ByTime &&
            Clock::now() >= nextPoll) {
            poll(source, output);
            nextPoll = Clock::now() + interval_;
        }
        const bool isSettled = woken != Woken::ByEvent || Clock::now() - first > longestDelay;
        if ((received.empty() && !isLost) || !(isSettled || isEnd))
            continue;
        if (isLost) {
            const QDateTime time = QDateTime::currentDateTimeUtc();
            writeLoss(time, output);
            write(changes_->afterLoss(time, picture(source.reread())), output);
        } else {
            write(changes_->after(received, picture(source.reread())), output);
        }
        received.clear();
        isLost = false;
    }
}

bool WatchCommand::receive(DeviceEventSource &events, std::vector<DeviceChanges::Message> &received)
{
    constexpr std::size_t most = 10'000; // then they are printed first
    DeviceEvent event;
    while (received.size() < most) {
        switch (events.receive(event)) {
        case DeviceEventSource::Reception::Event:
            received.push_back({event, QDateTime::currentDateTimeUtc()});
            break;
        case DeviceEventSource::Reception::Nothing:
            return true;
        case DeviceEventSource::Reception::Loss:
            return false;
        }
    }
    return true;
}

// What came and went between two readings is known by its message only.
bool WatchCommand::isWanted(const DeviceChange &change) const
{
    const auto isWantedDevice = [&](const DeviceChange::Device &device) {
        const auto isBelow = [&](const QString &top) {
            return device.path == top || device.path.startsWith(top + u'/');
        };
        return device.isMatch &&
               (tops_.isEmpty() || std::any_of(tops_.begin(), tops_.end(), isBelow));
    };
    if (!change.device())
        return !filter_ && tops_.isEmpty();
    return (change.before && isWantedDevice(*change.before)) ||
           (change.after && isWantedDevice(*change.after));
}

void WatchCommand::write(std::vector<DeviceChange> changes, CommandOutput &output)
{
    for (DeviceChange &change : changes) {
        polled_.reconcile(change);
        write(change, output);
    }
    output.flush();
}

void WatchCommand::write(const DeviceChange &change, CommandOutput &output)
{
    if (!isWanted(change))
        return;
    ++reported_;
    if (output.isText())
        writeText(change, output);
    else
        writeJson(change, output);
}

void WatchCommand::writeLoss(const QDateTime &time, CommandOutput &output)
{
    if (!output.isText())
        return output.addResult([&](JsonWriter &json) {
            json.member(QLatin1String("time"), time);
            json.member(QLatin1String("event"), QStringLiteral("lost"));
        });
    output.add(time.toLocalTime().toString(timeFormat));
    output.add(tr("lost      some messages of the kernel; what follows is found by comparing"),
               TextRole::Match);
    output.endLine();
}

void WatchCommand::writeText(const DeviceChange &change, CommandOutput &output) const
{
    constexpr int wordWidth = 10;
    output.add(change.time.toLocalTime().toString(timeFormat));
    output.add(QString::fromLatin1(wordOf(change)).leftJustified(wordWidth), roleOf(change.action));
    output.add(change.path(), TextRole::Name);
    if (change.action == Action::Move && !change.oldPath().isNull())
        output.add(QStringLiteral("  ") + tr("was %1").arg(change.oldPath()));
    const bool isBinding = change.action == Action::Bind || change.action == Action::Unbind;
    if (isBinding && !change.driver().isEmpty())
        output.add(QStringLiteral("  ") + change.driver(), TextRole::Key);
    output.endLine();
    if (!showsProperties_ || !change.before || !change.after)
        return;
    for (const auto &[key, before, after] :
         PropertyChange::between(change.before->properties, change.after->properties)) {
        output.addSpaces(4);
        output.add(key, TextRole::Key);
        output.add(QStringLiteral(": ") + RawText::linesOf(before).join(QLatin1String(", ")));
        output.addTrusted(output.terminal().isUtf8 ? u" → " : u" -> ");
        output.add(RawText::linesOf(after).join(QLatin1String(", ")));
        output.endLine();
    }
}

void WatchCommand::writeJson(const DeviceChange &change, CommandOutput &output) const
{
    output.addResult([&](JsonWriter &json) {
        json.member(QLatin1String("time"), change.time);
        json.member(QLatin1String("event"), QString::fromLatin1(wordOf(change)));
        if (const auto *const device = change.device()) {
            json.member(QLatin1String("id"), QString::number(device->id));
            json.member(QLatin1String("path"), device->path);
        }
        json.member(QLatin1String("kernelPath"), change.kernelPath);
        if (change.action == Action::Move)
            json.member(QLatin1String("oldPath"), change.oldPath());
        json.member(QLatin1String("driver"), change.driver());
        if (!showsProperties_ || !change.before || !change.after)
            return;
        json.key(QLatin1String("changes"));
        json.beginArray();
        for (const auto &[key, before, after] :
             PropertyChange::between(change.before->properties, change.after->properties)) {
            json.beginObject();
            json.member(QLatin1String("property"), key);
            for (const auto &[name, value] : {std::pair("old", before), std::pair("new", after)}) {
                if (value.isNone())
                    continue;
                json.key(QLatin1String(name));
                json.value(value);
            }
            json.endObject();
        }
        json.endArray();
    });
}

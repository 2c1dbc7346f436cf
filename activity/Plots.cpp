// SPDX-License-Identifier: Apache-2.0
#include "activity/Plots.h"

#include "activity/EntryPlace.h"
#include "compare/EntryIdentity.h"
#include "compare/VolatileAttributes.h"
#include "model/RegistryService.h"
#include "platform/host/BootClock.h"

#include <QPointer>

namespace {
constexpr int firstInterval = 1000;

double amountOf(const RegistryValue &number)
{
    return number.isSignedNumber() ? static_cast<double>(number.signedNumber())
                                   : static_cast<double>(number.numberBits());
}
} // namespace

Plots::Plots(RegistryService *service)
    : service_(service)
{
    timer_.setInterval(firstInterval);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &Plots::sample);
}

const PlotLine *Plots::lineOf(const TavRegistryEntry &entry, const ValuePath &value) const
{
    const auto found = std::find_if(lines_.begin(), lines_.end(), [&](const auto &line) {
        return line->kernelPath == entry.kernelPath() && line->value == value;
    });
    return found == lines_.end() ? nullptr : found->get();
}

const PlotLine *Plots::add(TavRegistryEntry &entry, const ValuePath &value)
{
    if (!service_ || isFull() || entry.kernelPath().isEmpty() || lineOf(entry, value))
        return nullptr;
    const EntryPlace place = EntryPlace::of(entry);
    const bool isCounter = VolatileAttributes::standard().isCounter(
        EntryIdentity::subsystemOrClass(entry), value.keyPath());
    lines_.push_back(std::make_unique<PlotLine>(
        PlotLine{.number = ++lastNumber_,
                 .place = freePlace(),
                 .entryTag = entry.entryTag(),
                 .name = place.name,
                 .path = place.path.isNull() ? entry.kernelPath() : place.path,
                 .kernelPath = entry.kernelPath(),
                 .inheritance = entry.inheritance(),
                 .value = value,
                 .reading = isCounter ? PlotSeries::Reading::Rate : PlotSeries::Reading::Value,
                 .series = PlotSeries(isCounter)}));
    const PlotLine *const added = lines_.back().get();
    request(added->kernelPath);
    timer_.start();
    Q_EMIT changed();
    return added;
}

int Plots::freePlace() const
{
    int place = 0;
    const auto isTaken = [&](const auto &line) { return line->place == place; };
    while (std::any_of(lines_.begin(), lines_.end(), isTaken))
        ++place;
    return place;
}

PlotLine *Plots::withNumber(quint64 number) const
{
    const auto found = std::find_if(lines_.begin(), lines_.end(),
                                    [&](const auto &line) { return line->number == number; });
    return found == lines_.end() ? nullptr : found->get();
}

void Plots::remove(quint64 number)
{
    std::erase_if(lines_, [&](const auto &line) { return line->number == number; });
    if (lines_.empty())
        timer_.stop();
    Q_EMIT changed();
}

void Plots::clear()
{
    lines_.clear();
    timer_.stop();
    Q_EMIT changed();
}

void Plots::setReading(quint64 number, PlotSeries::Reading reading)
{
    PlotLine *const line = withNumber(number);
    if (!line || line->reading == reading)
        return;
    line->reading = reading;
    Q_EMIT changed();
}

void Plots::setInterval(int milliseconds)
{
    if (milliseconds != timer_.interval())
        timer_.setInterval(milliseconds);
}

void Plots::sample()
{
    QSet<QString> kernelPaths;
    for (const auto &line : lines_) {
        if (!line->isOver())
            kernelPaths.insert(line->kernelPath);
    }
    for (const QString &kernelPath : kernelPaths)
        request(kernelPath);
}

// Not while the last request hangs.
void Plots::request(const QString &kernelPath)
{
    if (reading_.contains(kernelPath))
        return;
    reading_.insert(kernelPath);
    ObjectSample::Request request{.kernelPath = kernelPath};
    for (const auto &line : lines_) {
        if (line->kernelPath == kernelPath && !line->isOver())
            request.attributes.append(line->value.keyPath());
    }
    request.onRequest = request.attributes;
    service_->sample(request, [self = QPointer(this), kernelPath](const ObjectSample &sample) {
        if (self)
            self->take(kernelPath, sample);
    });
}

void Plots::take(const QString &kernelPath, const ObjectSample &sample)
{
    reading_.remove(kernelPath);
    for (const auto &line : lines_) {
        if (line->kernelPath == kernelPath && !line->isOver())
            take(*line, sample);
    }
    Q_EMIT sampled();
}

// A line that was added while its device was read has no value in that sample.
void Plots::take(PlotLine &line, const ObjectSample &sample)
{
    const qint64 time = sample.time == 0 ? BootClock::now() : sample.time;
    const qint64 longestStep = 3000LL * timer_.interval() + 1'000'000;
    if (!line.series.isEmpty() && time - line.series.lastTime() > longestStep)
        line.series.addGap(line.series.lastTime() + 1);
    const RegistryValue value = line.value.in(sample.members);
    const auto isAbout = [&](const QString &attribute) {
        return line.value.keyPath() == attribute ||
               line.value.keyPath().startsWith(attribute + u'/');
    };
    if (value.type() == RegistryValue::Type::Number) {
        line.series.add(time, amountOf(value));
        line.state = PlotLine::State::Followed;
        return;
    }
    if (!line.series.isEmpty())
        line.series.addGap(time);
    if (std::any_of(sample.unanswered.begin(), sample.unanswered.end(), isAbout))
        line.state = PlotLine::State::NoAnswer;
    else if (!value.isNone())
        line.state = PlotLine::State::NotANumber;
    else
        line.state = PlotLine::State::Absent;
}

// SPDX-License-Identifier: Apache-2.0
#include "activity/RecentChanges.h"

#include <QDateTime>

namespace {
constexpr int betweenChecks = 1000; // milliseconds
} // namespace

RecentChanges::RecentChanges()
{
    timer_.setInterval(betweenChecks);
    connect(&timer_, &QTimer::timeout, this, &RecentChanges::forgetOld);
}

void RecentChanges::setDuration(int seconds)
{
    duration_ = seconds;
    forgetOld();
}

void RecentChanges::note(quint64 entryTag, qint64 time)
{
    const bool isNew = !times_.contains(entryTag);
    times_[entryTag] = time;
    inOrder_.emplace_back(time, entryTag);
    if (!timer_.isActive())
        timer_.start();
    if (isNew)
        Q_EMIT changed();
}

std::optional<int> RecentChanges::secondsSince(quint64 entryTag) const
{
    const auto found = times_.constFind(entryTag);
    if (found == times_.constEnd() || *found < oldest())
        return std::nullopt;
    constexpr int millisecondsPerSecond = 1000;
    const qint64 since = QDateTime::currentMSecsSinceEpoch() - *found;
    return static_cast<int>(std::max<qint64>(since, 0) / millisecondsPerSecond);
}

qint64 RecentChanges::oldest() const
{
    constexpr qint64 millisecondsPerSecond = 1000;
    return QDateTime::currentMSecsSinceEpoch() - duration_ * millisecondsPerSecond;
}

void RecentChanges::forgetOld()
{
    const std::size_t before = inOrder_.size();
    while (!inOrder_.empty() && inOrder_.front().first < oldest()) {
        const auto [time, tag] = inOrder_.front();
        inOrder_.pop_front();
        if (times_.value(tag) == time) // it has not changed again
            times_.remove(tag);
    }
    if (inOrder_.empty())
        timer_.stop();
    if (inOrder_.size() != before)
        Q_EMIT changed();
}

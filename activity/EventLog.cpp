// SPDX-License-Identifier: Apache-2.0
#include "activity/EventLog.h"

namespace {
// Lists and paths are mostly shared, but counted as if they were not.
std::size_t bytesOf(const QString &text)
{
    constexpr std::size_t header = 16;
    return text.isEmpty() ? 0 : header + 2 * static_cast<std::size_t>(text.capacity());
}
} // namespace

std::size_t EventLog::bytesOf(const LogRow &row)
{
    const RegistryEvent &event = row.event;
    std::size_t bytes = sizeof(LogRow);
    for (const QString *const text : {&event.kernelPath, &event.oldKernelPath, &event.driver,
                                      &row.name, &row.path, &row.driver})
        bytes += ::bytesOf(*text);
    bytes += row.changes.capacity() * sizeof(LogChange);
    for (const LogChange &change : row.changes)
        bytes += ::bytesOf(change.key) + ::bytesOf(change.before) + ::bytesOf(change.after);
    return bytes;
}

quint64 EventLog::append(LogRow row)
{
    bytes_ += bytesOf(row);
    lost_ += row.event.lost;
    rows_.push_back(std::move(row));
    const quint64 number = endNumber() - 1;
    dropOldest();
    Q_EMIT changed();
    return number;
}

void EventLog::replace(quint64 number, LogRow row)
{
    if (number < firstNumber_ || number >= endNumber())
        return;
    LogRow &old = rows_[number - firstNumber_];
    bytes_ -= bytesOf(old);
    bytes_ += bytesOf(row);
    old = std::move(row);
    Q_EMIT replaced(number);
    dropOldest();
    Q_EMIT changed();
}

void EventLog::dropOldest()
{
    while (rows_.size() > maxRows || (bytes_ > maxBytes && rows_.size() > 1)) {
        bytes_ -= bytesOf(rows_.front());
        rows_.pop_front();
        ++firstNumber_;
        ++dropped_;
    }
}

void EventLog::countDropped()
{
    ++dropped_;
    Q_EMIT changed();
}

void EventLog::clear()
{
    firstNumber_ = endNumber();
    std::deque<LogRow>().swap(rows_);
    bytes_ = 0;
    dropped_ = 0;
    lost_ = 0;
    Q_EMIT changed();
}

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryEvent.h"

#include <QObject>
#include <QStringList>
#include <deque>
#include <vector>

using LogChange = RegistryEvent::Change;

// One event, and what is known of the entry that it is about.
struct LogRow
{
    RegistryEvent event;
    quint64 entryTag = 0;         // 0: no entry is known
    QString name = {};            // of the entry, with its location
    QString path = {};            // in the service plane, or else in the first that it is in
    QStringList inheritance = {}; // its class first
    QString driver = {};
    std::vector<LogChange> changes = {};

    QString className() const { return inheritance.value(0); }
};

// The latest events, in bounded memory: the oldest rows are dropped first, and counted. Rows have
// numbers that stay.
class EventLog : public QObject
{
    Q_OBJECT
public:
    static constexpr std::size_t maxRows = 100'000;
    static constexpr std::size_t maxBytes = 40'000'000; // of rows and their texts

    quint64 firstNumber() const { return firstNumber_; }
    quint64 endNumber() const { return firstNumber_ + rows_.size(); }
    const LogRow &row(quint64 number) const { return rows_[number - firstNumber_]; }
    quint64 dropped() const { return dropped_; } // since it was cleared
    // Events that never came, as far as that is known; since it was cleared.
    quint64 lost() const { return lost_; }
    std::size_t bytes() const { return bytes_; }

    quint64 append(LogRow row); // returns its number
    // Ignored for a row that is no longer there.
    void replace(quint64 number, LogRow row);
    void clear();        // numbers go on
    void countDropped(); // a row that was not appended

Q_SIGNALS:
    // After each change of rows or numbers; a burst of events brings many.
    void changed();
    // A row has other contents. Comes before changed.
    void replaced(quint64 number);

private:
    static std::size_t bytesOf(const LogRow &row);
    void dropOldest();

    std::deque<LogRow> rows_;
    quint64 firstNumber_ = 0;
    quint64 dropped_ = 0;
    quint64 lost_ = 0;
    std::size_t bytes_ = 0;
};

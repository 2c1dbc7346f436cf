// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/log/EventLogFilter.h"

#include <QAbstractTableModel>
#include <QSet>
#include <QTimer>
#include <deque>

// The rows of a log that a filter lets through, oldest first. Catches up with the log several times
// a second, so that a burst of events is one change.
class EventLogModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column {
        TimeColumn,
        EventColumn,
        EntryColumn,
        PathColumn,
        ClassColumn,
        DriverColumn,
        ChangesColumn,
        NumberColumn,
        columns
    };

    EventLogModel(EventLog &log, std::shared_ptr<TavDataStore> store);

    void setFilter(std::optional<FilterExpression> expression);
    void setPaused(bool paused);
    void setShown(bool shown); // while it is not, there are no rows
    quint64 waiting() const;   // rows that came since the pause began
    quint64 hidden() const;    // rows that the filter leaves out
    void catchUp();

    quint64 number(int row) const { return numbers_[static_cast<std::size_t>(row)]; }
    const LogRow &logRow(int row) const { return log_.row(number(row)); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void caughtUp();

private:
    void removeDropped();
    void showReplaced();
    void appendNew();
    static QString text(const LogRow &row, int column);
    static QString toolTip(const LogRow &row);
    static QVariant color(const LogRow &row);

    EventLog &log_;
    EventLogFilter filter_;
    std::deque<quint64> numbers_; // of the rows shown, rising
    quint64 next_ = 0;            // the first that was not looked at
    QSet<quint64> replaced_;
    QTimer timer_;
    bool isPaused_ = false;
    bool isShown_ = false;
};

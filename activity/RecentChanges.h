// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QObject>
#include <QTimer>
#include <deque>
#include <optional>

// Which entries appeared or changed a short time ago, whatever updates came since.
class RecentChanges : public QObject
{
    Q_OBJECT
public:
    RecentChanges();

    void setDuration(int seconds);            // how long ago is recent
    void note(quint64 entryTag, qint64 time); // in milliseconds since 1970
    // How long ago, in seconds; none: not recently.
    std::optional<int> secondsSince(quint64 entryTag) const;

Q_SIGNALS:
    void changed(); // which entries there are

private:
    void forgetOld();
    qint64 oldest() const; // time that is still recent

    int duration_ = 60;
    QHash<quint64, qint64> times_;                   // by tag
    std::deque<std::pair<qint64, quint64>> inOrder_; // in which they are forgotten
    QTimer timer_;
};

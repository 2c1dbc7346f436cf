#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QObject>
#include <QStringList>

// The files of the documents last opened or saved, the last one first. Kept in a domain of their
// own, so that they go on their way while the user's settings stay as they are.
class RecentDocuments : public QObject
{
    Q_OBJECT
public:
    static QString domain();
    static constexpr qsizetype most = 10;

    RecentDocuments();

    QStringList files() const; // absolute
    void add(const QString &file);
    void remove(const QString &file);
    void clear() { store({}); }

Q_SIGNALS:
    void changed(); // by this program or another running copy of it

private:
    void store(const QStringList &files);

    NotificationCenter::Observation observation_;
};

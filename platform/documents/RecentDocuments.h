// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QObject>
#include <QStringList>

// The files of the documents last opened or saved, the maxFiles recent first. In their own domain,
// so that opening a file does not change the user's settings.
class RecentDocuments : public QObject
{
    Q_OBJECT
public:
    static QString domain();
    static constexpr qsizetype maxFiles = 10;

    RecentDocuments();

    QStringList files() const; // absolute
    void add(const QString &file);
    void remove(const QString &file);
    void clear() { store({}); }

Q_SIGNALS:
    void changed(); // by this or another running copy

private:
    void store(const QStringList &files);

    NotificationCenter::Observation observation_;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/EventLog.h"
#include "model/RegistryValue.h"
#include "platform/runloop/NotificationCenter.h"

#include <QHash>
#include <QSet>
#include <memory>

class TavDataStore;
class TavRegistryEntry;

// Writes what happens in the registry of a live store into a log: each event when it arrives, and
// what updates of the store find out about it. Changes that no event reported become rows of their
// own, except those that always happen.
class LogRecorder : public QObject
{
    Q_OBJECT
public:
    LogRecorder(std::shared_ptr<TavDataStore> store, EventLog &log); // which must outlive this

Q_SIGNALS:
    // An entry appeared or changed. Comes when the entry is known.
    void changeNoted(quint64 entryTag, qint64 time);

private:
    // Of an entry that had events since the last update.
    struct Reported
    {
        quint64 lastRow = 0;
        QSet<QString> keys; // that its rows name already
    };

    void record(const RegistryEvent &event);
    TavRegistryEntry *entryAt(const QString &kernelPath) const;
    void noteRename(const RegistryEvent &event);
    void noteUpdate();
    void completeRows();
    void noteChanges(TavRegistryEntry &entry, const RegistryValue &before);
    void addChanges(quint64 row, std::vector<LogChange> changes);
    void addRowOfUpdate(TavRegistryEntry &entry, std::vector<LogChange> changes);
    static void describe(LogRow &row, TavRegistryEntry &entry);

    std::shared_ptr<TavDataStore> store_;
    EventLog &log_;
    QHash<quint64, RegistryValue> tables_; // by tag, as of the last update
    QHash<quint64, Reported> reported_;    // by tag
    std::vector<quint64> incomplete_;      // rows of entries that are not known yet
    QHash<QString, QString> knownAs_;      // the path at the last update of what was renamed
    QHash<QString, QString> renamed_;      // the other way round
    std::size_t rowsOfUpdate_ = 0;
    std::vector<NotificationCenter::Observation> observations_;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/ObjectSample.h"
#include "model/TavRegistryEntry.h"

#include <QObject>
#include <QSet>
#include <QTimer>
#include <memory>

class TavDataStore;

// Reads the properties of one entry again and again, beside its store, which stays as it is. Of the
// attributes that are read only on request, those that were asked for.
class ValueFollower : public QObject
{
    Q_OBJECT
public:
    explicit ValueFollower(std::shared_ptr<TavDataStore> store);

    void setInterval(int milliseconds);
    void follow(const EntryRef &entry); // null: none
    void setActive(bool active);
    const EntryRef &entry() const { return entry_; }
    // The table of the entry's properties with the values read last, as long as the store's values
    // are those that they follow; none: nothing differs.
    RegistryValue table() const;

Q_SIGNALS:
    void changed();                                  // the table
    void attributeStopped(const QString &attribute); // it did not answer

private:
    void read();
    void take(const ObjectSample &sample);
    QStringList askedFor() const;

    std::shared_ptr<TavDataStore> store_;
    EntryRef entry_;
    RegistryValue base_;    // the store's table when the values were read
    RegistryValue current_; // the same with the values read
    QSet<QString> stopped_;
    QTimer timer_;
    bool isActive_ = false;
    quint64 reading_ = 0; // the number of the one under way, or of the last
    bool isReading_ = false;
};

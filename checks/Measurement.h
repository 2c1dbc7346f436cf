// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/ObjectSample.h"
#include "model/TavRegistryEntry.h"

#include <QObject>

class RegistryService;

// Reads once what readings of the registry leave out and checks rest on: sensors, fans, batteries.
// Counters are read twice, to see which rise. Main thread.
class Measurement : public QObject
{
    Q_OBJECT
public:
    // Tables of an entry's properties; none in one that was not measured.
    struct Tables
    {
        RegistryValue base;    // in the registry
        RegistryValue now;     // the same with what was read
        RegistryValue earlier; // a moment before; none: it was read once

        // What is known when the registry has this table. What it has since read itself is newer.
        Tables over(const RegistryValue &table) const;
    };

    // The service must outlive it. Milliseconds are between the two readings of counters.
    Measurement(RegistryService &service, const std::vector<EntryRef> &entries,
                int milliseconds = 1000);

    void start();                                                    // finished follows, later
    const QHash<quint64, Tables> &tables() const { return tables_; } // by the tags of entries

Q_SIGNALS:
    void finished();

private:
    struct Item
    {
        quint64 tag;
        ObjectSample::Request request;
        bool isCounted; // read twice
    };

    void addItem(const TavRegistryEntry &entry);
    void readSome();
    void take(const Item &item, const ObjectSample &sample);
    void endRound();

    RegistryService &service_;
    int milliseconds_;
    std::vector<Item> items_;
    QHash<quint64, Tables> tables_;
    std::size_t next_ = 0; // item
    int pending_ = 0;
    bool isSecondRound_ = false;
};

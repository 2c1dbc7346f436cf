// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/CheckRun.h"
#include "model/TavRegistryEntry.h"
#include "platform/runloop/NotificationCenter.h"

#include <QFutureWatcher>
#include <QTimer>

class TavDataStore;
class TavDocument;

// What looks wrong in a document's registry, for all its windows. Checked on another thread after
// each update; what is checked is taken in slices that hold up nothing.
class DocumentFindings : public QObject
{
    Q_OBJECT
public:
    // Made when it is first asked for.
    static DocumentFindings &of(TavDocument &document);
    ~DocumentFindings() override;

    const std::vector<Finding> &findings() const { return result_.findings; }
    std::size_t count(Severity severity) const { return result_.count(severity); }

Q_SIGNALS:
    void changed();

private:
    explicit DocumentFindings(TavDocument &document);

    void begin();
    void addSome();
    void take();

    std::shared_ptr<TavDataStore> store_;
    CheckRun::Result result_;
    QFutureWatcher<CheckRun::Result> watcher_;
    std::vector<EntryRef> entries_; // to be added
    std::size_t added_ = 0;
    std::shared_ptr<CheckedRegistry> registry_; // null: nothing is to be added
    bool isOutdated_ = false;                   // what is being checked
    QTimer soon_;
    QTimer nextSlice_;
    std::vector<NotificationCenter::Observation> observations_;
};

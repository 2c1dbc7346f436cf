// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/CheckRun.h"
#include "explorer/findings/HiddenFindings.h"
#include "model/TavRegistryEntry.h"

#include <QDateTime>
#include <QFutureWatcher>
#include <QTimer>

class TavDataStore;
class TavDocument;

// What looks wrong in a document's registry, for all its windows. Checked on another thread after
// each update; what is checked is taken in slices that hold up nothing. Marks the entries of what
// the user wants to see.
class DocumentFindings : public QObject
{
    Q_OBJECT
public:
    // Made when it is first asked for.
    static DocumentFindings &of(TavDocument &document);
    ~DocumentFindings() override;

    const std::vector<Finding> &findings() const { return result_.findings; } // hidden ones, too
    const QStringList &failedChecks() const
    {
        return result_.failed;
    } // IDs; nothing of them is here
    bool isHidden(const Finding &finding) const;
    std::size_t count(Severity severity) const; // of those that are not hidden
    HiddenFindings &hidden() { return hidden_; }
    HiddenFindings::Place placeOf(const Finding &finding) const;
    QStringList titlesAt(const TavRegistryEntry &entry) const; // the worst first
    // The worst below an entry in a plane; none: nothing looks wrong there.
    std::optional<Severity> worstBelow(const TavRegistryEntry &entry, const QString &plane) const;

    bool canMeasure() const; // false: a snapshot, or measuring already
    void measure();
    const QDateTime &dateMeasured() const { return dateMeasured_; } // null: never

Q_SIGNALS:
    void checked(); // the findings may be the same, while their entries have other names
    void changed(); // the findings, or what is hidden

private:
    using SeverityByTag = QHash<quint64, Severity>;

    explicit DocumentFindings(TavDocument &document);

    void begin();
    void addSome();
    void take();
    void takeMeasured();
    void mark();
    SeverityByTag worstInPlane(const QString &plane) const;

    std::shared_ptr<TavDataStore> store_;
    HiddenFindings hidden_;
    CheckRun::Result result_;
    std::vector<EntryRef> marked_;                // entries
    mutable QHash<QString, SeverityByTag> below_; // by plane, made on demand
    QFutureWatcher<CheckRun::Result> watcher_;
    std::size_t entryCount_ = 0;                     // of the store, when adding began
    std::size_t added_ = 0;                          // of these
    std::shared_ptr<CheckedRegistry> registry_;      // that is being filled
    std::shared_ptr<const CheckedRegistry> checked_; // the last one; null: none, or a snapshot
    bool isOutdated_ = false;                        // what is being checked
    std::unique_ptr<Measurement> measurement_;       // under way; null: none
    QHash<quint64, Measurement::Tables> measured_;
    QDateTime dateMeasured_;
    QTimer soon_;
    QTimer nextSlice_;
    std::vector<NotificationCenter::Observation> observations_;
};

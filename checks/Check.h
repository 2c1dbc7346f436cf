// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/CheckedRegistry.h"
#include "checks/Finding.h"

#include <QCoreApplication>
#include <functional>

// What a check is about, in the words for the user.
struct CheckDescription
{
    QString id; // stable, such as "pci-link-slow"
    Severity severity = Severity::Warning;
    QStringList subsystems;      // of the entries that it looks at; empty: all
    QString key = {};            // that these have at the top; null: any
    QString title;               // "PCI Express link is slower than it could be"
    QString explanation;         // what was seen means
    QString nextStep;            // what to do
    QStringList reading = {};    // kernel documents by name
    bool needsMeasuring = false; // rests on values that are only read on request
    QStringList counters = {};   // attributes that are then read twice
    bool looksAround = false;    // at other entries, too
};

// Looks for one kind of fault. Has no state: any thread may use it. Gives no finding for an
// attribute in a form that it does not know.
class Check
{
public:
    struct Observation
    {
        QString detail;         // what was seen, such as "2.5 GT/s instead of 8 GT/s"
        QStringList properties; // paths of keys that it rests on
        std::optional<Severity> severity = {}; // none: that of the description
        QString nextStep = {};                 // null: likewise
    };
    using Report = std::function<void(const Observation &)>;

    virtual ~Check() = default;
    virtual CheckDescription description() const = 0;
    // Reports what is wrong with the entry.
    virtual void look(const CheckedEntry &entry, const Report &report) const = 0;
};

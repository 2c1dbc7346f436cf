// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <span>

class TavRegistryEntry;

// The facts of an entry as texts for exports.
class EntryFactTexts
{
    Q_DECLARE_TR_FUNCTIONS(EntryFactTexts)
public:
    enum class Fact : quint8 {
        Path,
        Name,
        Device, // what the hardware database calls it
        Class,
        Inheritance,
        Bundle,
        KernelPath,
        DeviceNode,
        Service, // "registered, matched, active"
        State,   // "new" or "terminated"
        BusyCount,
        RetainCount,
        Identifier,
        Discovered,
        Updated,
        Terminated,
    };

    static std::span<const Fact> all();
    static QString title(Fact fact);
    // Empty where the entry has none.
    static QString text(Fact fact, const TavRegistryEntry &entry, const QString &plane);

private:
    // The first one, if there are several; of another plane if there is none in this one.
    static QString path(const TavRegistryEntry &entry, const QString &plane);
    static QString service(const TavRegistryEntry &entry);
    static QString state(const TavRegistryEntry &entry);
};

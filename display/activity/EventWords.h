// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/EventLog.h"

#include <QCoreApplication>

// The texts of the rows of a log.
class EventWords
{
    Q_DECLARE_TR_FUNCTIONS(EventWords)
public:
    static QString word(RegistryEvent::Kind kind);       // for the user
    static QLatin1String name(RegistryEvent::Kind kind); // for programs
    static QString time(const RegistryEvent &event);     // of the day, local, to the millisecond
    // What is to be said beside the entry: its path before, how many events were lost; null:
    // nothing.
    static QString detail(const LogRow &row);
    static QString change(const LogChange &change); // "mtu: 1500 → 9000"
    static QString changes(const LogRow &row);      // on one line
    static QString path(const LogRow &row);         // of the entry, or else the kernel's
};

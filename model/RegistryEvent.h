// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <vector>

// Something that happened in a registry, as its service hears of it: before readings of the
// registry say what came of it.
struct RegistryEvent
{
    enum class Kind : quint8 {
        Appeared,
        Gone,
        Bound, // to a driver
        Unbound,
        Changed,
        Moved,   // to another parent
        Renamed, // under the same parent
        Busy,
        Idle, // no longer busy
        Sleep,
        Wake,
        Lost, // any number of events
    };

    // An attribute with another value, as the event itself says. Null texts: it was not there, or
    // is no longer.
    struct Change
    {
        QString key; // path of keys, such as "statistics/rx_bytes"
        QString before;
        QString after;
    };

    Kind kind = Kind::Changed;
    qint64 time = 0;         // of reception, in milliseconds since 1970
    quint64 sequence = 0;    // the kernel's number; 0: none
    QString kernelPath = {}; // such as "/sys/devices/virtual/net/lo"; null: of the whole registry
    QString oldKernelPath = {}; // of what moved or was renamed
    QString subsystem = {};     // null: unknown
    QString driver = {};        // as far as the event names it
    quint64 lost = 0;           // events, at most; 0: unknown
    std::vector<Change> changes = {};
};

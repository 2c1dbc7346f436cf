// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QStringList>

// Attributes of one object as they are now, read beside the registry: what the registry's service
// answers otherwise stays as it was.
struct ObjectSample
{
    struct Request
    {
        QString kernelPath;
        // By their paths below the object's directory, such as "statistics/rx_bytes". Empty: all
        // that readings of the registry read.
        QStringList attributes = {};
        QStringList onRequest = {}; // these, too, although they are read only on request
    };

    bool isThere = false; // the object
    qint64 time = 0;      // of the reading, by BootClock; 0: unknown
    // By key; attributes in folders are in dictionaries, as in the properties.
    RegistryValue::Members members;
    QStringList unanswered; // attributes that were waited for in vain
};

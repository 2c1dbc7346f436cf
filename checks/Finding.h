// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/Severity.h"

#include <QStringList>

// Something that looks wrong at an entry.
struct Finding
{
    QString check; // the ID, such as "pci-link-slow"
    Severity severity = Severity::Warning;
    quint64 entryTag = 0;
    QStringList properties = {}; // paths of keys that it rests on
    QString detail = {};         // what was seen, such as "2.5 GT/s instead of 8.0 GT/s"
    QString nextStep = {};       // what to do

    friend bool operator==(const Finding &, const Finding &) = default;
};

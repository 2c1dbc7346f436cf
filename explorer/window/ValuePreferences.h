// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QObject>

// Whether and how often the values that are shown are read again. A preference, so all windows
// agree.
class ValuePreferences : public QObject
{
    Q_OBJECT
public:
    ValuePreferences();

    bool follows() const;
    int interval() const; // milliseconds, from 200 to 60,000
    bool showsSparklines() const;
    void toggleFollow();
    void toggleSparklines();

Q_SIGNALS:
    void changed(); // maybe

private:
    NotificationCenter::Observation changes_;
    NotificationCenter::Observation merges_;
};

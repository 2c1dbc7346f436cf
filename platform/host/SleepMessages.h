// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

// Reports that the system goes to sleep and wakes. It may delay sleep until it is allowed.
class SleepMessages : public QObject
{
    Q_OBJECT
public:
    // Only the last request can be allowed.
    virtual void allowSleep(quint64 request) = 0;

Q_SIGNALS:
    void willSleep(quint64 request);
    void hasPoweredOn();
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

// Runs the event loop until the condition holds; false on a timeout.
template<class Condition>
bool waitFor(Condition holds, int milliseconds = 10'000)
{
    QElapsedTimer time;
    time.start();
    QTimer tick; // the condition may change without an event
    tick.setTimerType(Qt::PreciseTimer);
    tick.start(std::clamp(milliseconds, 1, 5));
    while (!holds()) {
        if (time.hasExpired(milliseconds))
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

inline void turnEventLoopFor(int milliseconds)
{
    waitFor([] { return false; }, milliseconds);
}

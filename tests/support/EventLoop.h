#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

// Turns the event loop until the condition holds; false when it does not in time.
template<class Condition>
bool waitFor(Condition holds, int milliseconds = 10'000)
{
    QElapsedTimer time;
    time.start();
    QTimer tick; // what is waited for may come without an event
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

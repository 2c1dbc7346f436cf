#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

// Turns the event loop until the condition holds; false when it does not in time.
template<class Condition>
bool waitFor(Condition holds, int milliseconds = 10'000)
{
    QElapsedTimer time;
    time.start();
    while (!holds()) {
        if (time.hasExpired(milliseconds))
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

inline void turnEventLoopFor(int milliseconds)
{
    waitFor([] { return false; }, milliseconds);
}

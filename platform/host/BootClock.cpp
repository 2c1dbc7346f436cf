// SPDX-License-Identifier: Apache-2.0
#include "platform/host/BootClock.h"

#include <ctime>

qint64 BootClock::now()
{
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return qint64(time.tv_sec) * 1'000'000 + time.tv_nsec / 1000;
}

QDateTime BootClock::wallTime(qint64 time)
{
    return QDateTime::currentDateTime().addMSecs((time - now()) / 1000);
}

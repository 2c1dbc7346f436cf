// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>

// A clock that never goes back and goes on during sleep, in microseconds since the machine started.
namespace BootClock {
qint64 now();
QDateTime wallTime(qint64 time); // local, by the offset that the wall clock has now
} // namespace BootClock

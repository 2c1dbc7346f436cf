// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace Timing {
inline double milliseconds(std::chrono::steady_clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

inline double wallSeconds()
{
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

// Processor time of this thread, which other programs hardly affect.
inline double threadSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double wallSecondsOf(const auto &action)
{
    const double start = wallSeconds();
    action();
    return wallSeconds() - start;
}

double threadSecondsOf(const auto &action)
{
    const double start = threadSeconds();
    action();
    return threadSeconds() - start;
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}
} // namespace Timing

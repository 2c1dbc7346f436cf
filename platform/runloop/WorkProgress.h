// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

// The progress of long work: set by the working thread, read and cancelled by the main one.
class WorkProgress
{
public:
    struct Cancelled
    {};

    // A fraction from 0 to 1. Throws Cancelled after cancel().
    void reach(double part)
    {
        reached_.store(part, std::memory_order_relaxed);
        if (isCancelled_.load(std::memory_order_relaxed))
            throw Cancelled();
    }
    double reached() const { return reached_.load(std::memory_order_relaxed); }
    void cancel() { isCancelled_.store(true, std::memory_order_relaxed); }

private:
    std::atomic<double> reached_ = 0;
    std::atomic<bool> isCancelled_ = false;
};

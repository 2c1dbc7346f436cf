#pragma once

#include <atomic>

// How far long work is: set by the working thread, read and cancelled by the main one.
class WorkProgress
{
public:
    struct Cancelled
    {};

    // A part of all, from 0 to 1. Throws Cancelled when the work is to end.
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

#include "model/linux/SweepControl.h"

#include <utility>

SweepControl::Step SweepControl::waitedFor() const
{
    const std::lock_guard lock(mutex_);
    return waitedFor_;
}

void SweepControl::skip(const Step &step)
{
    const std::lock_guard lock(mutex_);
    skipped_ = step;
}

void SweepControl::setWaitedFor(Step step)
{
    const std::lock_guard lock(mutex_);
    waitedFor_ = std::move(step);
}

bool SweepControl::takeSkip(const Step &step)
{
    const std::lock_guard lock(mutex_);
    if (skipped_.object.isNull() || skipped_ != step)
        return false;
    skipped_ = {};
    return true;
}

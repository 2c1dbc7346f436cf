// SPDX-License-Identifier: Apache-2.0
#include "model/linux/SlowStep.h"

#include <utility>

SlowStep::Step SlowStep::waitedFor() const
{
    const std::lock_guard lock(mutex_);
    return waitedFor_;
}

void SlowStep::skip(const Step &step)
{
    const std::lock_guard lock(mutex_);
    skipped_ = step;
}

void SlowStep::setWaitedFor(Step step)
{
    const std::lock_guard lock(mutex_);
    waitedFor_ = std::move(step);
}

bool SlowStep::takeSkip(const Step &step)
{
    const std::lock_guard lock(mutex_);
    if (skipped_.object.isNull() || skipped_ != step)
        return false;
    skipped_ = {};
    return true;
}

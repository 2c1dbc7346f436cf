// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/OneShotTimer.h"

#include <utility>

OneShotTimer::Ref OneShotTimer::schedule(double seconds, Action action)
{
    const Ref timer(new OneShotTimer);
    timer->action_ = std::move(action);
    timer->timer_ =
        RunLoop::main().startTimer(RunLoop::Seconds(seconds), [its = timer.get()] { its->fire(); });
    return timer;
}

void OneShotTimer::invalidate()
{
    timer_.reset();
    action_ = nullptr;
}

void OneShotTimer::fire()
{
    RunLoop::main().performInDefaultMode(weak_from_this(), [this] {
        const Ref self = shared_from_this();
        if (const Action action = std::exchange(action_, nullptr))
            action(self);
    });
}

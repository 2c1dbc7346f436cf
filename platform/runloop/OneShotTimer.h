// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/RunLoop.h"

// Fires once on the main run loop, in its default mode only, unless it is invalidated or its last
// reference goes first. Keeps itself alive while it fires.
class OneShotTimer : public std::enable_shared_from_this<OneShotTimer>
{
public:
    using Ref = std::shared_ptr<OneShotTimer>;
    using Action = std::function<void(const Ref &timer)>;

    static Ref schedule(double seconds, Action action);
    void invalidate();
    bool isPending() const { return static_cast<bool>(action_); }

private:
    OneShotTimer() = default;
    void fire();

    std::unique_ptr<RunLoop::Timer> timer_;
    Action action_; // empty after it fired or was invalidated
};

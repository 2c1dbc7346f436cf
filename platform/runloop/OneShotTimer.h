#pragma once

#include "platform/runloop/RunLoop.h"

// Acts once on the main run loop, in its default mode only, unless it is invalidated or forgotten
// by everyone before. Keeps itself while it acts.
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
    Action action_; // none once it has acted or been invalidated
};

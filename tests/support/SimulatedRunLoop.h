// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/RunLoop.h"

#include <map>

// Replaces the main run loop. Time passes only by advance().
class SimulatedRunLoop : public RunLoop
{
public:
    SimulatedRunLoop();
    ~SimulatedRunLoop() override;

    std::unique_ptr<Timer> startTimer(Seconds delay, Call fire) override;
    std::size_t pendingTimers() const;

    void advance(double seconds); // fires due timers in order
    void setIsInDefaultMode(bool isDefault);

private:
    struct Ticket;

    using Milliseconds = std::chrono::milliseconds;
    Milliseconds now_{0};
    std::multimap<Milliseconds, std::weak_ptr<Call>> timers_;
};

#pragma once

#include "platform/runloop/RunLoop.h"

#include <map>

// Stands in for the main run loop as long as it lives. Time passes when the test says so.
class SimulatedRunLoop : public RunLoop
{
public:
    SimulatedRunLoop();
    ~SimulatedRunLoop() override;

    std::unique_ptr<Timer> startTimer(Seconds delay, Call fire) override;
    std::size_t pendingTimers() const;

    void advance(double seconds); // firing what is due on the way, in the order of its time
    void setIsInDefaultMode(bool isDefault);

private:
    struct Ticket;

    using Milliseconds = std::chrono::milliseconds;
    Milliseconds now_{0};
    std::multimap<Milliseconds, std::weak_ptr<Call>> timers_;
};

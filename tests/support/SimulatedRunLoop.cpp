// SPDX-License-Identifier: Apache-2.0
#include "tests/support/SimulatedRunLoop.h"

struct SimulatedRunLoop::Ticket : RunLoop::Timer
{
    std::shared_ptr<Call> fire;
};

SimulatedRunLoop::SimulatedRunLoop()
{
    setMain(this);
}

SimulatedRunLoop::~SimulatedRunLoop()
{
    setMain(nullptr);
}

std::unique_ptr<RunLoop::Timer> SimulatedRunLoop::startTimer(Seconds delay, Call fire)
{
    auto ticket = std::make_unique<Ticket>();
    ticket->fire = std::make_shared<Call>(std::move(fire));
    timers_.emplace(now_ + std::chrono::ceil<Milliseconds>(delay), ticket->fire);
    return ticket;
}

std::size_t SimulatedRunLoop::pendingTimers() const
{
    return static_cast<std::size_t>(std::count_if(
        timers_.begin(), timers_.end(), [](const auto &timed) { return !timed.second.expired(); }));
}

void SimulatedRunLoop::advance(double seconds)
{
    const Milliseconds end = now_ + std::chrono::ceil<Milliseconds>(Seconds(seconds));
    while (!timers_.empty() && timers_.begin()->first <= end) {
        now_ = timers_.begin()->first;
        const auto due = timers_.begin()->second.lock();
        timers_.erase(timers_.begin());
        if (due)
            (*due)();
    }
    now_ = end;
}

void SimulatedRunLoop::setIsInDefaultMode(bool isDefault)
{
    setModeTest([isDefault] { return isDefault; });
    noteModeChange();
}

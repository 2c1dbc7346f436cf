#include "platform/RunLoop.h"

#include <QScopeGuard>
#include <QTimer>
#include <cmath>

namespace {
class EventLoopTimer : public RunLoop::Timer
{
public:
    EventLoopTimer(RunLoop::Seconds delay, RunLoop::Call fire)
    {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.callOnTimeout(&timer_, std::move(fire));
        timer_.start(std::chrono::ceil<std::chrono::milliseconds>(delay));
    }

private:
    QTimer timer_;
};

class EventLoop : public RunLoop
{
public:
    std::unique_ptr<Timer> startTimer(Seconds delay, Call fire) override
    {
        return std::make_unique<EventLoopTimer>(delay, std::move(fire));
    }
};

RunLoop *standIn = nullptr;
} // namespace

RunLoop::RunLoop() = default;
RunLoop::~RunLoop() = default;

RunLoop &RunLoop::main()
{
    static EventLoop loop;
    return standIn ? *standIn : loop;
}

void RunLoop::setMain(RunLoop *loop)
{
    standIn = loop;
}

void RunLoop::noteModeChange()
{
    // A call may open a menu or a dialog, which holds back those after it.
    while (!heldBack_.empty() && isInDefaultMode()) {
        const HeldBack next = std::move(heldBack_.front());
        heldBack_.erase(heldBack_.begin());
        if (const auto owner = next.owner.lock())
            next.call();
    }
}

void RunLoop::performInDefaultMode(std::weak_ptr<const void> owner, Call call)
{
    noteModeChange(); // those before it go first
    if (isInDefaultMode())
        call();
    else
        heldBack_.push_back({std::move(owner), std::move(call)});
}

void RunLoop::wait(const std::function<bool(std::chrono::milliseconds)> &done)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds slice(50);
    const auto start = Clock::now();
    const bool isNested = std::exchange(isWaiting_, true);
    const auto end = qScopeGuard([&] {
        if (waitDisplay_ && !isNested)
            waitDisplay_->waitEnded();
        isWaiting_ = isNested;
        // Not at once: who waits is in the middle of something.
        afterWait_ = startTimer(Seconds(0), [this] { noteModeChange(); });
    });
    while (!done(slice)) {
        if (waitDisplay_ && !isNested)
            waitDisplay_->waiting(
                std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start));
    }
}

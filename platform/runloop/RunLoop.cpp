// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/RunLoop.h"

#include <QPointer>
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
    // A call may open a menu or a dialog, which defers the calls after it.
    while (!heldBack_.empty() && isInDefaultMode()) {
        const Call next = std::move(heldBack_.front());
        heldBack_.erase(heldBack_.begin());
        next();
    }
}

void RunLoop::performInDefaultMode(Call call)
{
    noteModeChange(); // earlier calls go first
    if (isInDefaultMode())
        call();
    else
        heldBack_.push_back(std::move(call));
}

// An earlier call may destroy the owner.
void RunLoop::performInDefaultMode(std::weak_ptr<const void> owner, Call call)
{
    performInDefaultMode([owner = std::move(owner), call = std::move(call)] {
        if (const auto held = owner.lock())
            call();
    });
}

void RunLoop::performLater(QObject &owner, Call call)
{
    const auto perform = [guarded = QPointer(&owner), call = std::move(call)] {
        main().performInDefaultMode([guarded, call] {
            if (guarded)
                call();
        });
    };
    QMetaObject::invokeMethod(&owner, perform, Qt::QueuedConnection);
}

RunLoop::Hold::Hold()
{
    ++main().holds_;
}

RunLoop::Hold::~Hold()
{
    RunLoop &loop = main();
    --loop.holds_;
    // Deferred: the caller is still in the middle of its work.
    loop.afterWait_ = loop.startTimer(Seconds(0), [&loop] { loop.noteModeChange(); });
}

void RunLoop::wait(Wait &wait, const std::function<bool(std::chrono::milliseconds)> &done)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds slice(50);
    const auto start = Clock::now();
    const bool isNested = std::exchange(isWaiting_, true);
    const auto end = qScopeGuard([&] {
        if (waitDisplay_ && !isNested)
            waitDisplay_->waitEnded();
        isWaiting_ = isNested;
        // Deferred: the waiting code is in the middle of something.
        afterWait_ = startTimer(Seconds(0), [this] { noteModeChange(); });
    });
    while (!done(slice)) {
        if (waitDisplay_ && !isNested)
            waitDisplay_->waiting(
                wait, std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start));
    }
}

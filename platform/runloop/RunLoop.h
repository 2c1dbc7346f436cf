#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class QObject;
class Wait;

// Shows that the main thread waits.
class WaitDisplay
{
public:
    virtual ~WaitDisplay() = default;
    // Some twenty times a second.
    virtual void waiting(Wait &wait, std::chrono::milliseconds elapsed) = 0;
    virtual void waitEnded() = 0;
};

// The main run loop as timers and message sources use it. They work in its default mode alone: they
// hold back while a menu is open, an application-modal dialog runs or the main thread waits for
// something. Main thread only.
class RunLoop
{
public:
    using Seconds = std::chrono::duration<double>;
    using Call = std::function<void()>;
    // Stops when destroyed.
    class Timer
    {
    public:
        virtual ~Timer() = default;
    };

    RunLoop();
    virtual ~RunLoop();
    RunLoop(const RunLoop &) = delete;
    RunLoop &operator=(const RunLoop &) = delete;

    // The one on Qt's event loop, unless another stands in for it.
    static RunLoop &main();

    // Fires once, in whatever mode.
    virtual std::unique_ptr<Timer> startTimer(Seconds delay, Call fire) = 0;

    // Keeps the main run loop out of its default mode while it lives.
    class Hold
    {
    public:
        Hold();
        ~Hold();
        Hold(const Hold &) = delete;
        Hold &operator=(const Hold &) = delete;
    };

    bool isInDefaultMode() const
    {
        return !isWaiting_ && holds_ == 0 && (!modeTest_ || modeTest_());
    }
    void setModeTest(std::function<bool()> isDefault) { modeTest_ = std::move(isDefault); }
    // To be told whenever the default mode may have returned.
    void noteModeChange();
    // At once in the default mode, else when it returns, in the order of the requests; never when
    // the owner has gone.
    void performInDefaultMode(std::weak_ptr<const void> owner, Call call);
    // The same, but not before the main run loop turns again: the call may end who asks for it.
    static void performLater(QObject &owner, Call call);

    void setWaitDisplay(WaitDisplay *display) { waitDisplay_ = display; } // null: none
    // Keeps the main thread until done, which each time takes at most about the time it is given.
    // Within another wait, that one stays on display.
    void wait(Wait &wait, const std::function<bool(std::chrono::milliseconds)> &done);

protected:
    static void setMain(RunLoop *loop); // null: the one on Qt's event loop again

private:
    void performInDefaultMode(Call call);

    std::function<bool()> modeTest_;
    std::vector<Call> heldBack_;
    std::unique_ptr<Timer> afterWait_;
    WaitDisplay *waitDisplay_ = nullptr;
    bool isWaiting_ = false;
    int holds_ = 0;
};

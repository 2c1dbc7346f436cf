// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class QObject;
class Wait;

// Displays a wait of the main thread.
class WaitDisplay
{
public:
    virtual ~WaitDisplay() = default;
    // Called about twenty times a second.
    virtual void waiting(Wait &wait, std::chrono::milliseconds elapsed) = 0;
    virtual void waitEnded() = 0;
};

// The main run loop for timers and message sources. They work in its default mode only: not while a
// menu is open, an application-modal dialog runs or the main thread waits. Main thread only.
class RunLoop
{
public:
    using Seconds = std::chrono::duration<double>;
    using Call = std::function<void()>;
    // Destroying it stops the timer.
    class Timer
    {
    public:
        virtual ~Timer() = default;
    };

    RunLoop();
    virtual ~RunLoop();
    RunLoop(const RunLoop &) = delete;
    RunLoop &operator=(const RunLoop &) = delete;

    // Runs on Qt's event loop; tests can replace it. Process-wide, like the event loop.
    static RunLoop &main();

    // Fires once, in any mode.
    virtual std::unique_ptr<Timer> startTimer(Seconds delay, Call fire) = 0;

    // Keeps the main run loop out of its default mode.
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
    // Call this whenever the default mode may have returned.
    void noteModeChange();
    // Calls immediately in the default mode, else when it returns, in the order of the requests;
    // never after the owner is gone.
    void performInDefaultMode(std::weak_ptr<const void> owner, Call call);
    // The same, but never before control returns to the event loop: the call may destroy the
    // caller.
    static void performLater(QObject &owner, Call call);

    void setWaitDisplay(WaitDisplay *display) { waitDisplay_ = display; } // null: none
    // Blocks the main thread until done returns true. Each call of done may take about the given
    // time. A nested wait leaves the outer one on display.
    void wait(Wait &wait, const std::function<bool(std::chrono::milliseconds)> &done);

protected:
    static void setMain(RunLoop *loop); // null: back to Qt's event loop

private:
    void performInDefaultMode(Call call);

    std::function<bool()> modeTest_;
    std::vector<Call> heldBack_;
    std::unique_ptr<Timer> afterWait_;
    WaitDisplay *waitDisplay_ = nullptr;
    bool isWaiting_ = false;
    int holds_ = 0;
};

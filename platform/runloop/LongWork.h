// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/WorkProgress.h"

#include <QString>
#include <functional>
#include <memory>

// Runs work on another thread and, once it takes long, shows its progress with a way to cancel.
class WorkDisplay
{
public:
    using Work = std::function<void(WorkProgress &)>;

    virtual ~WorkDisplay() = default; // ends the display
    // Returns when the work has ended. Rethrows its exceptions.
    virtual void run(const Work &work) = 0;
};

// Work that may take too long for the main thread. Without a display it runs on the calling thread.
// The display stays for as long as this object, to cover what follows on the main thread. Main
// thread only.
class LongWork
{
public:
    // Any is shown after half a second and can be cancelled. Moment is short; it is shown
    // immediately, cannot be cancelled and leaves the keyboard focus where it is.
    enum class Kind : quint8 { Any, Moment };

    explicit LongWork(const QString &title, Kind kind = Kind::Any);
    ~LongWork();
    LongWork(const LongWork &) = delete;
    LongWork &operator=(const LongWork &) = delete;

    // False when the user cancelled it.
    bool run(const WorkDisplay::Work &work);

private:
    std::unique_ptr<WorkDisplay> display_; // null: none
};

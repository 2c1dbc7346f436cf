#pragma once

#include "platform/runloop/WorkProgress.h"

#include <QString>
#include <functional>
#include <memory>

// Does work on another thread and shows meanwhile, once it takes long, how far it is; the user may
// end it there.
class WorkDisplay
{
public:
    using Work = std::function<void(WorkProgress &)>;

    virtual ~WorkDisplay() = default; // shows nothing any more
    // Returns when the work has ended. What it throws is thrown here.
    virtual void run(const Work &work) = 0;
};

// Work that may take so long that it must not keep the main thread. Without a display it is done
// on the calling thread. What is still to do on the main thread afterwards is shown, too, for as
// long as this lives. Main thread only.
class LongWork
{
public:
    // Most work is shown after half a second, and the user may end it. Work of a moment or two is
    // shown at once and cannot be ended: what the user types meanwhile stays where they type it.
    enum class Kind : quint8 { Any, Moment };
    using DisplayFactory =
        std::function<std::unique_ptr<WorkDisplay>(const QString &title, Kind kind)>;
    static void setDisplayFactory(DisplayFactory factory); // null: none

    explicit LongWork(const QString &title, Kind kind = Kind::Any);
    ~LongWork();
    LongWork(const LongWork &) = delete;
    LongWork &operator=(const LongWork &) = delete;

    // False when the user has ended it.
    bool run(const WorkDisplay::Work &work);

private:
    std::unique_ptr<WorkDisplay> display_; // null: none
};

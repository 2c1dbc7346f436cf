#pragma once

#include "model/linux/SysfsPath.h"

#include <mutex>

// Between a reading and who watches it for the user, each in a thread of its own.
class SlowStep
{
public:
    struct Step
    {
        SysfsPath object; // null: no step
        SysfsPath path;   // of what is read, at or below the object

        bool operator==(const Step &) const = default;
    };

    Step waitedFor() const; // what has taken longest so far; none while nothing takes long
    void skip(const Step &step);

    // For the reading.
    void setWaitedFor(Step step);
    bool takeSkip(const Step &step); // once: whether it is to be given up

private:
    mutable std::mutex mutex_;
    Step waitedFor_;
    Step skipped_;
};

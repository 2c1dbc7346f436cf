// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/SysfsPath.h"

#include <mutex>

// The slowest step of a running reading, shared between its threads and the dialog that shows it.
class SlowStep
{
public:
    struct Step
    {
        SysfsPath object; // null: no step
        SysfsPath path;   // what is being read, at or below the object

        bool operator==(const Step &) const = default;
    };

    Step waitedFor() const; // the longest so far; none while nothing is slow
    void skip(const Step &step);

    // Called by the reading.
    void setWaitedFor(Step step);
    bool takeSkip(const Step &step); // true once if the step is to be given up

private:
    mutable std::mutex mutex_;
    Step waitedFor_;
    Step skipped_;
};

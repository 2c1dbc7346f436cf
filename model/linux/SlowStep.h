#pragma once

#include <QByteArray>
#include <mutex>

// Between a reading and who watches it for the user, each in a thread of its own.
class SlowStep
{
public:
    struct Step
    {
        QByteArray object; // its path; null for no step
        QByteArray path;   // of what is asked, at or below the object's

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

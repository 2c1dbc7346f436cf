#pragma once

#include <QString>

// What the main thread waits for, as the user may see it and end it. Main thread only.
class Wait
{
public:
    struct Subject
    {
        QString object; // null while nothing takes long by itself
        QString part;   // of the object; null for all of it

        bool operator==(const Subject &) const = default;
    };

    virtual ~Wait() = default;
    virtual Subject subject() = 0;
    virtual void skip() = 0;   // what subject has returned last
    virtual void cancel() = 0; // all of it
};

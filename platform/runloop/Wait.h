// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// A wait of the main thread that the user can see and end. Main thread only.
class Wait
{
public:
    struct Subject
    {
        QString object; // null: nothing takes long by itself
        QString part;   // of the object; null: all of it

        bool operator==(const Subject &) const = default;
    };

    virtual ~Wait() = default;
    virtual Subject subject() = 0;
    virtual void skip() = 0;   // skips the last result of subject()
    virtual void cancel() = 0; // ends the whole wait
};

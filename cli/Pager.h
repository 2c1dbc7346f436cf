// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

// Shows what is written to standard output a page at a time. Start it before any other thread.
class Pager
{
public:
    Pager() = default;
    ~Pager(); // waits until the user leaves it
    Pager(const Pager &) = delete;
    Pager &operator=(const Pager &) = delete;

    // VANDREL_PAGER, else PAGER, else less. Without one, output goes to the terminal as it is.
    void start();

private:
    pid_t process_ = 0; // 0: none
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

// Calls back on the main run loop, in its default mode only, while a descriptor is readable. In
// other modes the data stays in the descriptor.
class RunLoopSource
{
public:
    RunLoopSource(int descriptor, std::function<void()> readable);

private:
    void activated();

    QSocketNotifier notifier_;
    std::function<void()> readable_;
    std::shared_ptr<const void> alive_;
};

#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

// Calls on the main run loop, in its default mode only, as long as a descriptor has something to
// read. What comes meanwhile waits in the descriptor.
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

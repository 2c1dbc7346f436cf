// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/RunLoopSource.h"

#include "platform/runloop/RunLoop.h"

RunLoopSource::RunLoopSource(int descriptor, std::function<void()> readable)
    : notifier_(descriptor, QSocketNotifier::Read)
    , readable_(std::move(readable))
    , alive_(std::make_shared<int>())
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { activated(); });
}

void RunLoopSource::activated()
{
    if (RunLoop::main().isInDefaultMode()) {
        const auto readable = readable_; // the call may destroy this source
        readable();
        return;
    }
    notifier_.setEnabled(false); // else the event loop would spin
    RunLoop::main().performInDefaultMode(alive_, [this] { notifier_.setEnabled(true); });
}

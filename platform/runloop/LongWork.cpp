// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/LongWork.h"

#include "platform/host/DesktopServices.h"

LongWork::LongWork(const QString &title, Kind kind)
{
    if (const auto &makeDisplay = DesktopServices::instance().makeWorkDisplay)
        display_ = makeDisplay(title, kind);
}

LongWork::~LongWork() = default;

bool LongWork::run(const WorkDisplay::Work &work)
{
    try {
        WorkProgress progress;
        display_ ? display_->run(work) : work(progress);
    } catch (const WorkProgress::Cancelled &) {
        return false;
    }
    return true;
}

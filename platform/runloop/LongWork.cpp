#include "platform/runloop/LongWork.h"

namespace {
LongWork::DisplayFactory makeDisplay;
}

void LongWork::setDisplayFactory(DisplayFactory factory)
{
    makeDisplay = std::move(factory);
}

LongWork::LongWork(const QString &title, Kind kind)
    : display_(makeDisplay ? makeDisplay(title, kind) : nullptr)
{}

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

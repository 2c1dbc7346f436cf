#pragma once

#include "model/linux/SweepControl.h"
#include "platform/runloop/Wait.h"

#include <memory>

// The main thread's wait for a reading of the host.
class SweepWait final : public Wait
{
public:
    Subject subject() override;
    void skip() override { control_->skip(shown_); }
    void cancel() override { isCancelled_ = true; }

    bool isCancelled() const { return isCancelled_; }
    const std::shared_ptr<SweepControl> &control() const { return control_; } // for the reading

private:
    std::shared_ptr<SweepControl> control_ = std::make_shared<SweepControl>();
    SweepControl::Step shown_;
    bool isCancelled_ = false;
};

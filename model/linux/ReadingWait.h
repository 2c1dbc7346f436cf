// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/SlowStep.h"
#include "platform/runloop/Wait.h"

#include <memory>

// The main thread waiting for a reading of the host.
class ReadingWait final : public Wait
{
public:
    Subject subject() override;
    void skip() override { slowStep_->skip(shown_); }
    void cancel() override { isCancelled_ = true; }

    bool isCancelled() const { return isCancelled_; }
    // To give to the reading.
    const std::shared_ptr<SlowStep> &slowStep() const { return slowStep_; }

private:
    std::shared_ptr<SlowStep> slowStep_ = std::make_shared<SlowStep>();
    SlowStep::Step shown_;
    bool isCancelled_ = false;
};

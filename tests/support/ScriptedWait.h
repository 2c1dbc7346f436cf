// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/Wait.h"

// A wait for one thing until it is skipped.
class ScriptedWait : public Wait
{
public:
    explicit ScriptedWait(Subject awaited = {})
        : awaited_(std::move(awaited))
    {}
    Subject subject() override { return isSkipped ? Subject() : awaited_; }
    void skip() override { isSkipped = true; }
    void cancel() override { isCancelled = true; }

    bool isSkipped = false;
    bool isCancelled = false;

private:
    Subject awaited_;
};

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/FileDescriptor.h"

// Receives SIGINT and SIGTERM as readable bytes, instead of being ended by them. Make it before any
// thread.
class EndSignals
{
public:
    EndSignals();
    EndSignals(const EndSignals &) = delete;
    EndSignals &operator=(const EndSignals &) = delete;

    int descriptor() const { return descriptor_.get(); }

private:
    FileDescriptor descriptor_;
};

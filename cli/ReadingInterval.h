// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>

class CommandInput;

// The option "interval" of the commands that read values again and again: a second if it is not
// set. Throws CommandError unless it is from 0.2 to 60.
std::chrono::milliseconds readingInterval(const CommandInput &input);

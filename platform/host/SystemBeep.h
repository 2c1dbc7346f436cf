// SPDX-License-Identifier: Apache-2.0
#pragma once

// The sound for a command that cannot run.
namespace SystemBeep {
void beep();
} // namespace SystemBeep

#pragma once

// The sound for a command that cannot run.
namespace SystemBeep {
void beep();
} // namespace SystemBeep

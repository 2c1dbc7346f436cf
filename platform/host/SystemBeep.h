#pragma once

#include <functional>

// The beep by which a command that cannot run answers. Silent until somebody is set to sound it.
namespace SystemBeep {
using Sounder = std::function<void()>;

void setSounder(Sounder sounder);
void beep();
} // namespace SystemBeep

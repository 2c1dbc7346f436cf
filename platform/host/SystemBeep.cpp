#include "platform/host/SystemBeep.h"

namespace {
SystemBeep::Sounder &currentSounder()
{
    static SystemBeep::Sounder sounder;
    return sounder;
}
} // namespace

void SystemBeep::setSounder(Sounder sounder)
{
    currentSounder() = std::move(sounder);
}

void SystemBeep::beep()
{
    if (const Sounder &sounder = currentSounder())
        sounder();
}

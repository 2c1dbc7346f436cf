// SPDX-License-Identifier: Apache-2.0
#include "platform/host/SystemBeep.h"

#include "platform/host/DesktopServices.h"

void SystemBeep::beep()
{
    if (const auto &beep = DesktopServices::instance().beep)
        beep();
}

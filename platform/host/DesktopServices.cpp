// SPDX-License-Identifier: Apache-2.0
#include "platform/host/DesktopServices.h"

DesktopServices &DesktopServices::instance()
{
    static DesktopServices services;
    return services;
}

#include "platform/host/DesktopServices.h"

DesktopServices &DesktopServices::instance()
{
    static DesktopServices services;
    return services;
}

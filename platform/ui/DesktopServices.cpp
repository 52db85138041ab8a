#include "platform/ui/DesktopServices.h"

DesktopServices &desktopServices()
{
    static DesktopServices services;
    return services;
}

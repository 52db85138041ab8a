#include "platform/foundation/SystemServices.h"

SystemServices &systemServices()
{
    static SystemServices services;
    return services;
}

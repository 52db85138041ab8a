#include "helpers/sharedHelpers.h"

#include "platform/ui/ApplicationDelegate.h"

QObject *sharedHelpers::getCore()
{
    return applicationDelegate();
}

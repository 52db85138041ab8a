#include "helpers/HelperClasses.h"

#include "helpers/appBundle.h"
#include "helpers/fileEnum.h"
#include "helpers/hardwareInfo.h"
#include "helpers/loginItems.h"
#include "helpers/mndStringList.h"

#include <QMetaType>

void registerHelperClasses()
{
    qRegisterMetaType<appBundle *>();
    qRegisterMetaType<fileEnum *>();
    qRegisterMetaType<hardwareInfo *>();
    qRegisterMetaType<loginItems *>();
    qRegisterMetaType<mndStringList *>();
}

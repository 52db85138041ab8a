#include "host/Welcome.h"

using namespace Qt::StringLiterals;

Welcome::Welcome()
{
    loadInterfaceFile(u"Welcome"_s);
}

#include "aux_windows/slvFeedback.h"

#include "platform/foundation/Format.h"
#include "platform/ui/ApplicationDelegate.h"
#include "plugin_host/mndCore.h"

using namespace Qt::StringLiterals;

slvFeedback::slvFeedback()
{
    loadInterfaceFile(u"slvFeedback"_s);
}

void slvFeedback::refresh()
{
    if (auto *core = qobject_cast<mndCore *>(applicationDelegate()))
        core->log(format(u"%@::%@:%d"_s, {u"slvFeedback"_s, u"refresh"_s, __LINE__}));
}

#include "aux_windows/mndPrefs.h"

#include "platform/ui/ApplicationDelegate.h"
#include "plugin_host/mndCore.h"

using namespace Qt::StringLiterals;

mndPrefs::mndPrefs()
{
    loadInterfaceFile(u"Prefs"_s);
}

void mndPrefs::show()
{
    auto *core = qobject_cast<mndCore *>(applicationDelegate());
    if (!core)
        return;
    core->beginModalSheet(window());
    core->uiMakeSLVTouchbarWithButtons({u"Close"_s}, this, Selector(u"hide"_s), window());
}

void mndPrefs::hide()
{
    if (auto *core = qobject_cast<mndCore *>(applicationDelegate()))
        core->endModalSheet(window());
}

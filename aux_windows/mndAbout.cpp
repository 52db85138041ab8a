#include "aux_windows/mndAbout.h"

#include "platform/ui/ApplicationDelegate.h"
#include "plugin_host/mndCore.h"

using namespace Qt::StringLiterals;

mndAbout::mndAbout()
{
    loadInterfaceFile(u"About"_s);
}

void mndAbout::onOKClicked(QObject *)
{
    if (auto *core = qobject_cast<mndCore *>(applicationDelegate()))
        core->endModalSheet(window());
}

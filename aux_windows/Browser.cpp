#include "aux_windows/Browser.h"

#include "platform/foundation/Format.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/ApplicationDelegate.h"
#include "platform/ui/DesktopServices.h"
#include "plugin_host/mndCore.h"

#include <QScopedValueRollback>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace Browser {

namespace {

/// More of an address helps nobody who reads the log.
constexpr qsizetype longestQuote = 200;

/// One alert at a time: whatever else could not be opened meanwhile has the same reason. What goes
/// along with the address is of no use to a reader.
void tellOfFailure(const QUrl &url)
{
    static bool isTelling = false;
    auto *core = qobject_cast<mndCore *>(applicationDelegate());
    if (!core || isTelling)
        return;
    const QScopedValueRollback telling(isTelling, true);
    const QString page = url.toString(QUrl::RemoveQuery | QUrl::RemoveFragment);
    desktopServices().alertPanel->run(
        core->stringResource(u"SZ_TITLE"_s, u"Solvane"_s),
        format(core->stringResource(
                   u"SZ_NO_BROWSER"_s,
                   u"No web browser could be opened. You can visit this page with a browser of "
                   "your choice:\n\n%@"_s),
               {page}),
        u"OK"_s, {});
}

} // namespace

void open(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    const bool isOfHost = url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
    if (!url.isValid() || url.isRelative() || (isOfHost && url.host().isEmpty())) {
        systemServices().systemLog->write(u"This is no address that could be opened: "_s
                                          + oneLine(address.section(u'?', 0, 0), longestQuote));
        return;
    }
    const auto tell = [url] { tellOfFailure(url); };
    if (!desktopServices().workspace->openUrl(address, tell))
        tell();
}

} // namespace Browser

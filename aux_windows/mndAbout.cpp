#include "aux_windows/mndAbout.h"

#include "aux_windows/Browser.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/ProductAddresses.h"
#include "platform/foundation/SystemServices.h"

#include <QUrl>

using namespace Qt::StringLiterals;

mndAbout::mndAbout()
{
    if (!loadSheet(u"About"_s) || !core())
        return;
    if (lblEdition) {
        lblEdition->setText(core()->mndEdition() == 1 ? u"Mac App Store Edition"_s
                                                      : u"Web edition"_s);
    }
    if (lblLink) {
        lblLink->setStringValue(QUrl(ProductAddresses::homePage()).host());
        lblLink->setClickTarget(this, Selector(u"lblLinkClicked"_s));
    }
    if (lblVersion) {
        lblVersion->setText(format(u"Version %@"_s,
                                   {systemServices().mainBundle->infoValue(u"CFBundleVersion"_s)}));
    }
    window()->setWindowTitle(core()->stringResource(u"SZ_MENU_ABOUT"_s, window()->windowTitle()));
    onEscape([this] { onOKClicked(nullptr); });
}

void mndAbout::onOKClicked(QObject *)
{
    endSheet();
}

void mndAbout::lblLinkClicked()
{
    if (isEnding())
        return;
    onOKClicked(nullptr);
    // Behind the end of the sheet, which is queued, too.
    MainThread::runLater([self = QPointer(this)] {
        if (self)
            Browser::open(ProductAddresses::homePage());
    });
}

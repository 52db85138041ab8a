#include "host/mndAppDelegate.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/Perform.h"

#include <QApplication>

using namespace Qt::StringLiterals;

void mndAppDelegate::loadSystemTouchBar()
{
    _sysTB = perform::responds(qApp, Selector(u"isAutomaticCustomizeTouchBarMenuItemEnabled"_s));
}

// A request for a bar without the status button changes nothing: the sheets that ask for one are
// closed by their own controls.
void mndAppDelegate::uiMakeSLVTouchbarWithButtons(const QStringList &, QObject *, const Selector &,
                                                  QWidget *)
{ }

void mndAppDelegate::uiMakeSLVSystemTouchbarWithButtons(const QStringList &titles, QObject *target,
                                                        const Selector &selector, QWidget *)
{
    if (!_sysTB)
        return;
    _systbSEL = selector;
    _systbTarget = target;
    _systbTitles = titles;
}

void mndAppDelegate::uiRevertToSystemTouchbar()
{
    MainThread::runAndWait([this] { _uiRevertToSystemTouchbar(); });
}

void mndAppDelegate::_uiRevertToSystemTouchbar()
{
    loadSystemTouchBar();
}

#include "host/mndAppDelegate.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/PathExtension.h"
#include "platform/foundation/SystemServices.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// A page of the host's own, under its rules.
WebView *governedBy(mndAppDelegate *host, QWidget *view)
{
    auto *page = qobject_cast<WebView *>(view);
    if (!page)
        return nullptr;
    page->setUIDelegate(host);
    page->setEditingDelegate(host);
    page->setFrameLoadDelegate(host);
    page->setScrollingAllowed(false);
    return page;
}

} // namespace

void mndAppDelegate::uiCreateIndeterminateSpinner(QWidget *webView)
{
    MainThread::runLater([self = QPointer(this), view = QPointer(webView)] {
        if (self)
            self->_uiCreateIndeterminateSpinner(view);
    });
}

void mndAppDelegate::uiFreeIndeterminateSpinner(QWidget *webView)
{
    MainThread::runLater([self = QPointer(this), view = QPointer(webView)] {
        if (self)
            self->_uiFreeIndeterminateSpinner(view);
    });
}

void mndAppDelegate::_uiCreateIndeterminateSpinner(QWidget *webView)
{
    WebView *page = governedBy(this, webView);
    if (!page)
        return;
    QFile file(systemServices().mainBundle->pathForResource(u"ui-spinner"_s, u"htm"_s));
    if (!file.fileName().isEmpty() && file.open(QIODevice::ReadOnly)) {
        page->loadHtml(QString::fromUtf8(file.readAll()),
                       QUrl::fromLocalFile(file.fileName()).toString(QUrl::FullyEncoded));
    } else {
        page->loadHtml(u"Error loading resource."_s);
    }
    page->reload();
}

void mndAppDelegate::_uiFreeIndeterminateSpinner(QWidget *webView)
{
    WebView *page = governedBy(this, webView);
    if (!page)
        return;
    page->loadHtml(u"."_s);
    page->reload();
}

// Neither goes to the log file, and neither waits for extended logging.
void mndAppDelegate::webViewAddMessageToConsole(WebView *, const QVariantMap &message)
{
    const QVariant line = message.value(u"lineNumber"_s);
    const QString source = lastPathComponent(message.value(u"sourceURL"_s).toString());
    systemServices().systemLog->write(line.isValid()
                                          ? format(u"WebKit error @ %@:%@\n%@\n---"_s,
                                                   {source, line, message.value(u"message"_s)})
                                          : format(u"WebKit message: %@"_s, {message}));
}

quint64 mndAppDelegate::webViewDragDestinationActionMask(WebView *)
{
    return 0;
}

quint64 mndAppDelegate::webViewDragSourceActionMask(WebView *)
{
    return 0;
}

QStringList mndAppDelegate::webViewContextMenuItems(WebView *, const QStringList &)
{
    return {};
}

bool mndAppDelegate::webViewShouldChangeSelectedDOMRange(WebView *, const WebRange &proposed)
{
    return proposed.startIsEditable && proposed.endIsEditable;
}

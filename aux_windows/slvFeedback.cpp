#include "aux_windows/slvFeedback.h"

#include "aux_windows/Browser.h"
#include "aux_windows/FeedbackAddress.h"
#include "helpers/HelperProtocols.h"
#include "helpers/mndHelpers.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/ApplicationDelegate.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/ModalLoop.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 webEdition = 2;

/// Enough for a page that leads on when it is shown, and no flood from one that means harm.
constexpr int mostOpenedByItself = 5;

/// RFC 6454.
bool haveSameOrigin(const QUrl &one, const QUrl &other)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == "https"_L1 ? 443 : 80);
    };
    return one.scheme() == other.scheme() && one.host() == other.host() && port(one) == port(other);
}

/// What the machine says of itself. The object that knows it is let go as soon as it was read.
void addMachine(FeedbackFacts &facts, mndCore &core, mndHelpers *helpers)
{
    const std::unique_ptr<QObject> object = core.newFactoryInstance(u"hardwareInfo"_s);
    auto *machine = qobject_cast<hardwareInfoProtocol *>(object.get());
    if (!machine)
        return;
    facts.cpu = format(u"%d@%d"_s, {machine->cpuCount(), machine->cpuSpeed()});
    facts.ram = format(u"%d"_s, {machine->ramSize()});
    if (helpers) {
        const QString volume = u"/"_s;
        facts.hdd = format(u"%@:%@"_s,
                           {helpers->stringForFileSize(machine->hdSize(volume)),
                            helpers->stringForFileSize(machine->hdFree(volume))})
                        .remove(u' ');
    }
    facts.model = machine->modelName().remove(u' ');
    facts.os = machine->osVersion().replace(u' ', u"%20"_s);
}

FeedbackFacts factsOf(mndCore &core)
{
    FeedbackFacts facts;
    facts.lang = systemServices().languages->preferred().value(0, u"en"_s);
    auto *helpers = qobject_cast<mndHelpers *>(core.sharedObject(u"SHARED.HELPERS"_s));
    addMachine(facts, core, helpers);
    facts.path = QUrl::fromLocalFile(systemServices().mainBundle->path() + u'/')
                     .toString(QUrl::FullyEncoded);
    if (helpers)
        facts.appid = helpers->anonymousUUID();
    facts.appver = core.slvBundleVersionString();
    facts.apped = core.mndEdition() == webEdition ? u"WWW"_s : u"MAS"_s;
    return facts;
}

} // namespace

slvFeedback::slvFeedback()
{
    if (!loadSheet(u"slvFeedback"_s))
        return;
    _core = core();
    onEscape([this] { onCloseClicked(); });
    if (!_core)
        return;
    const QString title = _core->stringResource(u"SZ_SUPPORT_FEEDBACK"_s, window()->windowTitle());
    window()->setWindowTitle(title);
    if (_webview)
        _webview->setAccessibleName(title);
}

void slvFeedback::trace(const char *selector, int line)
{
    if (_core) {
        _core->log(format(u"%@::%@:%d"_s, {u"slvFeedback"_s, QString::fromLatin1(selector), line}));
    }
}

void slvFeedback::refresh()
{
    trace("refresh", __LINE__);
    if (_webview)
        _webview->setDrawsBackground(true);
    if (_loaded || !_core)
        return;
    navigateTo(feedbackAddress(factsOf(*_core)));
}

void slvFeedback::navigateTo(const QString &address)
{
    Browser::open(address);
}

void slvFeedback::open(const QString &address)
{
    const quint64 use = _webview ? _webview->useCount() : 0;
    if (std::exchange(m_lastUse, use) != use)
        m_openedSince = 0;
    if (m_openedSince == mostOpenedByItself)
        return;
    ++m_openedSince;
    Browser::open(format(u"http://%@"_s, {address}));
}

void slvFeedback::showHelp()
{
    trace("showHelp", __LINE__);
    if (_core)
        _core->showPlugin(u"plugin.support"_s);
    hide();
}

void slvFeedback::hideWindow()
{
    trace("hideWindow", __LINE__);
    hide();
}

// Not counted as other sheets are: the page may lead to a plugin while it shows.
void slvFeedback::show()
{
    trace("show", __LINE__);
    if (!window())
        return;
    if (lblClose) {
        lblClose->setClickTarget(this, Selector(u"onCloseClicked"_s));
        if (core())
            lblClose->setStringValue(core()->stringResource(u"SZ_CLOSE"_s, u"Close"_s));
    }
    _core = core();
    refresh();
    perform::sendQuietly(applicationDelegate(), Selector(u"_beginModalSheet:"_s),
                         {QVariant::fromValue(window())});
    ModalLoop::runModalForWindow(window());
}

void slvFeedback::hide()
{
    trace("hide", __LINE__);
    showText(u"."_s);
    _loaded = false;
    m_openedSince = 0;
    perform::sendQuietly(applicationDelegate(), Selector(u"_endModalSheet:"_s),
                         {QVariant::fromValue(window())});
    ModalLoop::stopModal();
}

void slvFeedback::onCloseClicked()
{
    trace("onCloseClicked", __LINE__);
    hide();
}

void slvFeedback::exit()
{
    if (window())
        window()->close();
    systemServices().processEnd->exit(0);
}

void slvFeedback::webViewFinishedLoading()
{
    if (_webview)
        _webview->setWindowScriptObject(u"slv"_s, this);
}

bool slvFeedback::isSelectorExcludedFromWebScript(const Selector &selector)
{
    const QString &name = selector.name();
    return name != "open:"_L1 && name != "hideWindow"_L1 && name != "showHelp"_L1;
}

bool slvFeedback::isKeyExcludedFromWebScript(const QString &)
{
    return true;
}

QString slvFeedback::webScriptNameForSelector(const Selector &selector)
{
    try {
        return selector.name().section(u':', 0, 0);
    } catch (const std::exception &problem) {
        systemServices().systemLog->write(
            format(u"Error building name for selector (%@): %@"_s,
                   {selector.name(), QString::fromUtf8(problem.what())}));
        return {};
    }
}

void slvFeedback::webViewDidClearWindowObject(WebView *view)
{
    view->setWindowScriptObject(u"slv"_s, this);
}

/// Texts of ours are no pages: neither does the wheel turn for them, nor do they keep anyone from
/// the feedback page.
bool slvFeedback::showsOwnText() const
{
    return _webview && !m_ownText.isNull() && _webview->html() == m_ownText;
}

/// @param text HTML.
void slvFeedback::showText(const QString &text)
{
    m_ownText = text;
    if (_webview)
        _webview->loadHtml(m_ownText);
}

void slvFeedback::setBusy(bool busy)
{
    if (!_spinner)
        return;
    _spinner->setVisible(busy);
    if (busy)
        _spinner->startAnimation();
    else
        _spinner->stopAnimation();
}

void slvFeedback::webViewDidStartProvisionalLoad(WebView *)
{
    if (showsOwnText())
        return;
    _loaded = true;
    setBusy(true);
}

void slvFeedback::webViewDidFinishLoad(WebView *)
{
    setBusy(false);
    trace("webView:didFinishLoadForFrame:", __LINE__);
}

void slvFeedback::webViewDidFailLoad(WebView *, const QString &)
{
    trace("webView:didFailLoadWithError:forFrame:", __LINE__);
    _loaded = false;
    setBusy(false);
    if (!showsOwnText() && _core) {
        showText(_core->stringResource(u"SZ_ERROR_LOADING_PAGE"_s,
                                       u"Error loading page, please try again later."_s));
    }
}

bool slvFeedback::webViewMayNavigate(WebView *view, const QUrl &address, bool isMainFrame)
{
    const QString scheme = address.scheme();
    const bool isWeb = scheme == "https"_L1 || scheme == "http"_L1;
    if (!isMainFrame)
        return isWeb || scheme == "about"_L1 || scheme == "data"_L1 || scheme == "blob"_L1;
    return isWeb && !showsOwnText() && haveSameOrigin(address, view->address());
}

void slvFeedback::webViewAddMessageToConsole(WebView *, const QVariantMap &) { }

quint64 slvFeedback::webViewDragDestinationActionMask(WebView *)
{
    return 0;
}

quint64 slvFeedback::webViewDragSourceActionMask(WebView *)
{
    return 0;
}

QStringList slvFeedback::webViewContextMenuItems(WebView *, const QStringList &)
{
    return {};
}

bool slvFeedback::webViewShouldChangeSelectedDOMRange(WebView *, const WebRange &proposed)
{
    return proposed.startIsEditable && proposed.endIsEditable;
}

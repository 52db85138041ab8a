#include "platform/ui/WebView.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"

#include <QLabel>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QTextDocumentFragment>

using namespace Qt::StringLiterals;

namespace {

/// What one page may tell its console, which may well be the system log.
constexpr int mostMessages = 100;
constexpr qsizetype longestMessage = 1000;

QString shortened(const QString &text)
{
    if (text.size() <= longestMessage)
        return text;
    const bool isHalved = text[longestMessage - 1].isHighSurrogate();
    return text.left(longestMessage - int(isHalved)) + u'\u2026';
}

/// Null, and a line in the system log, where the module is missing. It stays loaded.
WebEngine *engine()
{
    QPluginLoader module(systemServices().mainBundle->path() + u"/Contents/PlugIns/WebEngine.so"_s);
    module.setLoadHints(QLibrary::PreventUnloadHint);
    auto *found = qobject_cast<WebEngine *>(module.instance());
    if (!found)
        systemServices().systemLog->write(u"No web page can be shown: "_s + module.errorString());
    return found;
}

/// The written name of a method, with a colon for every argument.
Selector selectorOf(const QMetaMethod &method)
{
    QString name = QString::fromLatin1(method.name());
    const QList<QByteArray> parameters = method.parameterNames();
    for (qsizetype i = 0; i < parameters.size(); ++i)
        name += (i == 0 ? QString() : QString::fromLatin1(parameters[i])) + u':';
    return Selector(name);
}

} // namespace

void WebView::registerClass()
{
    qRegisterMetaType<WebView *>();
}

WebView::WebView(QWidget *parent)
    : QWidget(parent)
{ }

WebView::~WebView() = default;

void WebView::loadHtml(const QString &html, const QString &baseUrl)
{
    load(html.isNull() ? u""_s : html, QUrl(baseUrl));
}

void WebView::loadAddress(const QString &address)
{
    load({}, QUrl(address));
}

void WebView::load(const QString &html, const QUrl &address)
{
    m_html = html;
    m_address = address;
    m_isDue = true;
    loadSoon();
}

void WebView::reload()
{
    m_isDue = true;
    loadSoon();
}

/// Once for all that is asked in one go, and not before somebody looks. A page that was there goes
/// on in the background: it gives way at once.
void WebView::loadSoon()
{
    if (isVisible() || m_page)
        QMetaObject::invokeMethod(this, &WebView::loadNow, Qt::QueuedConnection);
}

void WebView::loadNow()
{
    if (!m_isDue || !(isVisible() || m_page))
        return;
    if (!makePage()) {
        // There is no text to stand for the page.
        if (m_html.isNull())
            failedLoading(u"There is no web engine."_s);
        return;
    }
    m_isDue = false;
    m_messages = 0;
    m_page->setPolicy(policy());
    windowObjectCleared();
    if (m_html.isNull())
        m_page->load(m_address);
    else
        m_page->load(m_html, m_address);
}

bool WebView::makePage()
{
    if (m_page)
        return true;
    delete m_shown;
    if (WebEngine *module = engine()) {
        m_page = module->newPage(this, *this);
        m_page->setObject(m_offered);
        m_shown = m_page->widget();
    } else {
        auto *text = new QLabel(QTextDocumentFragment::fromHtml(m_html).toPlainText(), this);
        text->setTextFormat(Qt::PlainText);
        text->setWordWrap(true);
        text->setAlignment(Qt::AlignCenter);
        m_shown = text;
    }
    m_shown->setGeometry(rect());
    m_shown->show();
    return m_page != nullptr;
}

void WebView::runScript(const QString &script, const std::function<void(const QVariant &)> &done)
{
    if (m_page)
        m_page->runScript(script, done);
}

WebViewDelegate *WebView::asked(const QPointer<QObject> &delegate)
{
    static WebViewDelegate answers;
    auto *given = qobject_cast<WebViewDelegate *>(delegate);
    return given ? given : &answers;
}

/// The page decides in a process of its own, where nobody can be asked: it gets the answers along.
WebPagePolicy WebView::policy()
{
    WebPagePolicy policy;
    WebViewDelegate *ui = asked(m_uiDelegate);
    policy.acceptsDrops = ui->webViewDragDestinationActionMask(this) != 0;
    policy.startsDrags = ui->webViewDragSourceActionMask(this) != 0;
    policy.hasContextMenu = !ui->webViewContextMenuItems(this, {u"Copy"_s}).isEmpty();
    policy.scrolls = m_isScrollingAllowed;
    policy.drawsBackground = m_drawsBackground;
    for (const bool start : {false, true}) {
        for (const bool end : {false, true}) {
            policy.selectable[start][end] =
                asked(m_editingDelegate)->webViewShouldChangeSelectedDOMRange(this, {start, end});
        }
    }
    return policy;
}

void WebView::consoleMessage(const QString &message, int lineNumber, const QString &sourceUrl)
{
    if (m_messages > mostMessages)
        return;
    QVariantMap entries{{u"message"_s, shortened(message)}};
    if (m_messages++ == mostMessages)
        entries[u"message"_s] = u"The page's further messages are left out."_s;
    if (lineNumber > 0) {
        entries[u"lineNumber"_s] = lineNumber;
        entries[u"sourceURL"_s] = shortened(sourceUrl);
    }
    asked(m_uiDelegate)->webViewAddMessageToConsole(this, entries);
}

void WebView::windowObjectCleared()
{
    asked(m_frameLoadDelegate)->webViewDidClearWindowObject(this);
}

void WebView::startedLoading()
{
    asked(m_frameLoadDelegate)->webViewDidStartProvisionalLoad(this);
}

void WebView::finishedLoading()
{
    asked(m_frameLoadDelegate)->webViewDidFinishLoad(this);
}

void WebView::failedLoading(const QString &error)
{
    asked(m_frameLoadDelegate)->webViewDidFailLoad(this, error);
}

bool WebView::mayNavigate(const QUrl &address, bool isMainFrame)
{
    return !address.isLocalFile()
        && asked(m_uiDelegate)->webViewMayNavigate(this, address, isMainFrame);
}

void WebView::setWindowScriptObject(const QString &name, QObject *object)
{
    m_scriptObject = object;
    m_functions.clear();
    m_offered = {};
    if (auto *scripting = qobject_cast<WebScripting *>(object)) {
        m_offered.name = name;
        const QMetaObject *meta = object->metaObject();
        for (int i = 0; i < meta->methodCount(); ++i) {
            const Selector selector = selectorOf(meta->method(i));
            if (scripting->isSelectorExcludedFromWebScript(selector))
                continue;
            if (const QString function = scripting->webScriptNameForSelector(selector);
                !function.isNull()) {
                m_functions[function] = selector;
            }
        }
        m_offered.functions = m_functions.keys();
        m_offered.functions.sort();
        for (int i = 0; i < meta->propertyCount(); ++i) {
            const QString key = QString::fromLatin1(meta->property(i).name());
            if (!scripting->isKeyExcludedFromWebScript(key))
                m_offered.constants[key] = meta->property(i).read(object);
        }
    }
    if (m_page)
        m_page->setObject(m_offered);
}

/// Outside of the engine, which may not be disturbed in the middle of a message.
void WebView::functionCalled(const QString &function, const QStringList &arguments)
{
    const auto called = m_functions.constFind(function);
    if (called == m_functions.cend())
        return;
    const Selector &selector = *called;
    QVariantList given;
    for (const QString &argument : arguments.mid(0, selector.argumentCount()))
        given << argument;
    if (given.size() != selector.argumentCount())
        return;
    const auto send = [this, selector, given] {
        if (isVisible())
            perform::sendQuietly(m_scriptObject, selector, given);
    };
    QMetaObject::invokeMethod(this, send, Qt::QueuedConnection);
}

void WebView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isDue)
        loadSoon();
}

void WebView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_shown)
        m_shown->setGeometry(rect());
}

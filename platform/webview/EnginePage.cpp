#include "platform/webview/EnginePage.h"

#include "platform/webview/PagePolicyScript.h"

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QUrl>
#include <QVariant>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

/// A page that keeps to itself: its scripts open no window and no alert, and it asks for no file
/// and starts no other program.
class EnginePage::Page : public QWebEnginePage
{
public:
    Page(QWebEngineProfile *profile, WebPageObserver &observer)
        : QWebEnginePage(profile)
        , m_observer(observer)
    {
        confine();
        connect(this, &QWebEnginePage::loadingChanged, this, &Page::tell);
        connect(this, &QWebEnginePage::renderProcessTerminated, this, [this] {
            m_awaited = 0;
            m_observer.failedLoading(u"The page's process has ended."_s);
        });
    }

    void awaitLoad() { ++m_awaited; }

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message,
                                  int lineNumber, const QString &sourceId) override
    {
        m_observer.consoleMessage(message, lineNumber, sourceId);
    }
    void javaScriptAlert(const QUrl &, const QString &) override { }
    // A page that is left asks, too: what the program loads does not wait for its consent.
    bool javaScriptConfirm(const QUrl &, const QString &) override { return m_awaited > 0; }
    bool javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *) override
    {
        return false;
    }
    QStringList chooseFiles(FileSelectionMode, const QStringList &, const QStringList &) override
    {
        return {};
    }
    QWebEnginePage *createWindow(WebWindowType) override { return nullptr; }

    bool acceptNavigationRequest(const QUrl &address, NavigationType type,
                                 bool isMainFrame) override
    {
        // What the program itself loads counts as typed in. Redirections are no better than other
        // ways: a script's counts as one, too.
        return type == NavigationTypeTyped || m_observer.mayNavigate(address, isMainFrame);
    }

private:
    void confine()
    {
        QWebEngineSettings *rules = settings();
        for (const auto attribute :
             {QWebEngineSettings::LocalContentCanAccessFileUrls,
              QWebEngineSettings::LocalContentCanAccessRemoteUrls,
              QWebEngineSettings::JavascriptCanOpenWindows, QWebEngineSettings::ErrorPageEnabled,
              QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::PluginsEnabled,
              QWebEngineSettings::JavascriptCanAccessClipboard}) {
            rules->setAttribute(attribute, false);
        }
        rules->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
    }

    void tell(const QWebEngineLoadingInfo &loading)
    {
        const auto status = loading.status();
        if (status == QWebEngineLoadingInfo::LoadStartedStatus)
            return m_observer.startedLoading();
        // A page that wanted to go where it may not stays. A load of the program's own that ends
        // so shows nothing, unless it gave way to another.
        const bool isStopped = status == QWebEngineLoadingInfo::LoadStoppedStatus;
        const bool wasAwaited = m_awaited > 0;
        m_awaited = isStopped && wasAwaited ? m_awaited - 1 : 0;
        if (status == QWebEngineLoadingInfo::LoadFailedStatus
            || (isStopped && wasAwaited && m_awaited == 0)) {
            m_observer.failedLoading(loading.errorString());
        } else {
            m_observer.finishedLoading();
        }
    }

    WebPageObserver &m_observer;
    int m_awaited = 0; ///< loads of the program's own that have not ended
};

/// Refuses before the page is even asked, and sees what the user does before the page does.
class EnginePage::View : public QWebEngineView
{
public:
    View(QWidget *parent, WebPageObserver &observer)
        : QWebEngineView(parent)
        , m_observer(observer)
    { }

    void apply(const WebPagePolicy &policy)
    {
        m_policy = policy;
        setAcceptDrops(policy.acceptsDrops);
        setContextMenuPolicy(policy.hasContextMenu ? Qt::DefaultContextMenu : Qt::NoContextMenu);
    }

protected:
    /// Input goes to a child, which another one replaces when the page changes its process.
    void childEvent(QChildEvent *event) override
    {
        if (event->added())
            event->child()->installEventFilter(this);
        QWebEngineView::childEvent(event);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress
            || event->type() == QEvent::TouchBegin)
            m_observer.usedByUser();
        return QWebEngineView::eventFilter(watched, event);
    }
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        if (m_policy.acceptsDrops)
            QWebEngineView::dragEnterEvent(event);
        else
            event->ignore();
    }
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        if (m_policy.hasContextMenu)
            QWebEngineView::contextMenuEvent(event);
    }

private:
    WebPageObserver &m_observer;
    WebPagePolicy m_policy;
};

EnginePage::EnginePage(QWidget *parent, WebPageObserver &observer)
    : m_bridge(observer)
    , m_page(std::make_unique<Page>(&m_profile, observer))
    , m_view(new View(parent, observer))
{
    m_bridge.connectTo(*m_page);
    m_view->setPage(m_page.get());
}

// The view before its page, the page before its profile.
EnginePage::~EnginePage()
{
    delete m_view;
    m_page.reset();
}

QWidget *EnginePage::widget() const
{
    return m_view;
}

void EnginePage::load(const QString &html, const QUrl &baseUrl)
{
    m_page->awaitLoad();
    m_page->setHtml(html, baseUrl);
}

void EnginePage::load(const QUrl &address)
{
    m_page->awaitLoad();
    m_page->load(address);
}

void EnginePage::setPolicy(const WebPagePolicy &policy)
{
    m_view->apply(policy);
    m_page->setBackgroundColor(policy.drawsBackground ? Qt::white : Qt::transparent);
    setScript(u"policy"_s, pagePolicyScript(policy), QWebEngineScript::ApplicationWorld);
}

void EnginePage::setObject(const WebPageObject &object)
{
    const bool hasObject = !object.name.isEmpty();
    setScript(u"listener"_s, hasObject ? m_bridge.listenerScript() : QString(),
              QWebEngineScript::ApplicationWorld);
    setScript(u"object"_s, hasObject ? m_bridge.objectScript(object) : QString(),
              QWebEngineScript::MainWorld);
}

/// Into every frame, before anything of the page runs. Null for no script.
void EnginePage::setScript(const QString &name, const QString &source, quint32 world)
{
    QWebEngineScriptCollection &scripts = m_page->scripts();
    for (const QWebEngineScript &former : scripts.find(name)) {
        if (former.sourceCode() == source)
            return;
        scripts.remove(former);
    }
    if (source.isNull())
        return;
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(world);
    script.setRunsOnSubFrames(true);
    scripts.insert(script);
}

void EnginePage::runScript(const QString &script, const std::function<void(const QVariant &)> &done)
{
    m_page->runJavaScript(script, [done](const QVariant &result) {
        if (done)
            done(result);
    });
}

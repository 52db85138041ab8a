#pragma once

#include "platform/foundation/Selector.h"
#include "platform/ui/WebPage.h"

#include <QHash>
#include <QPointer>
#include <QPointF>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>
#include <QWidget>

class WebView;

/// An end of a selection that a user is about to make, as far as it can be told.
struct WebRange
{
    bool startIsEditable = false;
    bool endIsEditable = false;
};

/// Decides for a web view. A default body is the answer of a view without a delegate. Main thread.
class WebViewDelegate
{
public:
    virtual ~WebViewDelegate() = default;

    /// Of a page that says much, only so much. A long message is cut.
    /// @param message "message", and where it is known "lineNumber" and "sourceURL".
    virtual void webViewAddMessageToConsole(WebView *, const QVariantMap &message)
    {
        Q_UNUSED(message)
    }
    /// A page is about to be loaded: the moment to give it objects.
    virtual void webViewDidClearWindowObject(WebView *) { }
    virtual void webViewDidStartProvisionalLoad(WebView *) { }
    virtual void webViewDidFinishLoad(WebView *) { }
    virtual void webViewDidFailLoad(WebView *, const QString &error) { Q_UNUSED(error) }
    /// Whether the page may go there by itself. It is never asked about files: there it may not.
    virtual bool webViewMayNavigate(WebView *, const QUrl &address, bool isMainFrame)
    {
        Q_UNUSED(address)
        Q_UNUSED(isMainFrame)
        return true;
    }
    /// Masks of actions; 0 allows none.
    virtual quint64 webViewDragDestinationActionMask(WebView *) { return ~quint64(0); }
    virtual quint64 webViewDragSourceActionMask(WebView *) { return ~quint64(0); }
    /// Titles of the items that are left of the page's own; none for no menu.
    virtual QStringList webViewContextMenuItems(WebView *, const QStringList &items)
    {
        return items;
    }
    /// Whether this selection may be made. The answer goes by the range alone.
    virtual bool webViewShouldChangeSelectedDOMRange(WebView *, const WebRange &proposed)
    {
        Q_UNUSED(proposed)
        return true;
    }
};

#define WebViewDelegate_iid "com.solvane.WebViewDelegate/6"
Q_DECLARE_INTERFACE(WebViewDelegate, WebViewDelegate_iid)

/// Says what of an object the scripts of a page get to see. A default body hides everything. Main
/// thread.
class WebScripting
{
public:
    virtual ~WebScripting() = default;
    virtual bool isSelectorExcludedFromWebScript(const Selector &) { return true; }
    /// @param key the name of a property. What is not excluded is a constant for the page.
    virtual bool isKeyExcludedFromWebScript(const QString &key)
    {
        Q_UNUSED(key)
        return true;
    }
    /// The function's name in the page; null hides the selector after all.
    virtual QString webScriptNameForSelector(const Selector &) { return {}; }
};

#define WebScripting_iid "com.solvane.WebScripting/6"
Q_DECLARE_INTERFACE(WebScripting, WebScripting_iid)

/// Shows a page of HTML. A plugin makes one by its class name. Main thread.
///
/// The engine behind it is loaded when the first page of the program comes on the screen. Where it
/// cannot be loaded the view shows the page's text without any markup, and the system log says why.
class WebView : public QWidget, private WebPageObserver
{
    Q_OBJECT

public:
    /// Makes the class known to the factory of objects by class name.
    static void registerClass();

    Q_INVOKABLE explicit WebView(QWidget *parent = nullptr);
    ~WebView() override;

    /// Not owned; QObjects that implement WebViewDelegate. The last two are told of editing and
    /// loading, the first of all else. Null for none. What they answer counts from the next load.
    void setUIDelegate(QObject *delegate) { m_uiDelegate = delegate; }
    void setEditingDelegate(QObject *delegate) { m_editingDelegate = delegate; }
    void setFrameLoadDelegate(QObject *delegate) { m_frameLoadDelegate = delegate; }
    void setScrollingAllowed(bool allowed) { m_isScrollingAllowed = allowed; }
    /// Whether pages lie on white or on what is behind the view. Counts from the next load.
    void setDrawsBackground(bool draws) { m_drawsBackground = draws; }

    /// Puts an object under a name into every frame of every page loaded from now on. Its scripts
    /// can call what the object, as a WebScripting, does not exclude, with texts for arguments, and
    /// get no answer; calls arrive later, and not while the view is hidden.
    /// @param name a JavaScript identifier, as the object's functions have to be named as well.
    /// @param object not owned; null takes the former one away.
    void setWindowScriptObject(const QString &name, QObject *object);

    /// Shows the page; relative addresses in it are resolved by the base address.
    Q_INVOKABLE void loadHtml(const QString &html, const QString &baseUrl = {});
    Q_INVOKABLE void loadAddress(const QString &address);
    /// Loads the same once more.
    Q_INVOKABLE void reload();
    /// Null for a page that has an address.
    QString html() const { return m_html; }
    /// Of the page, or the base address of its text.
    QUrl address() const { return m_address; }
    /// How often the user has pressed a key, a button or the screen in the page.
    quint64 useCount() const { return m_useCount; }
    /// Nothing happens without a page. @param done may be empty.
    void runScript(const QString &script, const std::function<void(const QVariant &)> &done);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void consoleMessage(const QString &message, int lineNumber, const QString &sourceUrl) override;
    void windowObjectCleared() override;
    void startedLoading() override;
    void finishedLoading() override;
    void failedLoading(const QString &error) override;
    bool mayNavigate(const QUrl &address, bool isMainFrame) override;
    void usedByUser() override { ++m_useCount; }
    void functionCalled(const QString &function, const QStringList &arguments) override;
    void load(const QString &html, const QUrl &address);
    void loadSoon();
    void loadNow();
    bool makePage();
    WebPagePolicy policy();
    static WebViewDelegate *asked(const QPointer<QObject> &delegate);

    QPointer<QObject> m_uiDelegate;
    QPointer<QObject> m_editingDelegate;
    QPointer<QObject> m_frameLoadDelegate;
    QPointer<QObject> m_scriptObject;
    WebPageObject m_offered;
    QHash<QString, Selector> m_functions;
    bool m_isScrollingAllowed = true;
    bool m_drawsBackground = true;
    bool m_isDue = false;
    quint64 m_useCount = 0;
    int m_messages = 0; ///< told to the console since the program's last load
    QString m_html;
    QUrl m_address;
    std::unique_ptr<WebPage> m_page;
    QPointer<QWidget> m_shown; ///< the page, or the text that stands for it
};

#pragma once

#include "aux_windows/mndTextField.h"
#include "aux_windows/SheetController.h"
#include "platform/ui/ProgressIndicator.h"
#include "platform/ui/WebView.h"

#include <QPointer>

/// Leads to the product's feedback page: in the user's browser, with an anonymous description of
/// machine and installation in the address.
///
/// It also has a sheet with an embedded page, whose scripts know this object as "slv" and can call
/// open, hideWindow and showHelp of it, and nothing else. The page stays with its own
/// origin. Main thread.
class slvFeedback : public SheetController, public WebViewDelegate, public WebScripting
{
    Q_OBJECT
    Q_INTERFACES(WebViewDelegate WebScripting)
    Q_PROPERTY(WebView *_webview MEMBER _webview)
    Q_PROPERTY(ProgressIndicator *_spinner MEMBER _spinner)
    Q_PROPERTY(mndTextField *lblClose MEMBER lblClose)

public:
    slvFeedback();

    /// Opens the feedback page in the browser, unless the embedded page has one.
    Q_INVOKABLE void refresh();
    /// Opens an address in the browser. What is no URL (RFC 3986) opens nothing.
    Q_INVOKABLE void navigateTo(const QString &address);
    /// @param address what follows "http://". Of a page that opens one after the other without its
    /// user having touched it, only the first few are opened.
    Q_INVOKABLE void open(const QString &address);
    Q_INVOKABLE void showHelp();
    Q_INVOKABLE void hideWindow();

    /// Runs the sheet and returns when it is hidden.
    Q_INVOKABLE void show();
    Q_INVOKABLE void hide();
    Q_INVOKABLE void onCloseClicked();
    /// Ends the program.
    Q_INVOKABLE void exit();
    Q_INVOKABLE void webViewFinishedLoading();

    // WebScripting
    bool isSelectorExcludedFromWebScript(const Selector &selector) override;
    bool isKeyExcludedFromWebScript(const QString &key) override;
    QString webScriptNameForSelector(const Selector &selector) override;

    // WebViewDelegate
    void webViewDidClearWindowObject(WebView *view) override;
    void webViewDidStartProvisionalLoad(WebView *view) override;
    void webViewDidFinishLoad(WebView *view) override;
    void webViewDidFailLoad(WebView *view, const QString &error) override;
    bool webViewMayNavigate(WebView *view, const QUrl &address, bool isMainFrame) override;
    void webViewAddMessageToConsole(WebView *view, const QVariantMap &message) override;
    quint64 webViewDragDestinationActionMask(WebView *view) override;
    quint64 webViewDragSourceActionMask(WebView *view) override;
    QStringList webViewContextMenuItems(WebView *view, const QStringList &items) override;
    bool webViewShouldChangeSelectedDOMRange(WebView *view, const WebRange &proposed) override;

private:
    void trace(const char *selector, int line);
    void showText(const QString &text);
    bool showsOwnText() const;
    void setBusy(bool busy);

    bool _loaded = false; ///< the embedded page is being loaded, or was
    QPointer<WebView> _webview;
    QPointer<ProgressIndicator> _spinner;
    mndCore *_core = nullptr;
    QPointer<mndTextField> lblClose;
    QString m_ownText;     ///< the last one put in the place of a page
    quint64 m_lastUse = 0; ///< of the page by its user, when it last opened something
    int m_openedSince = 0; ///< addresses
};

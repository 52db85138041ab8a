#pragma once

#include <QStringList>
#include <QtPlugin>
#include <QVariantMap>

#include <array>
#include <functional>
#include <memory>

class QUrl;
class QWidget;

/// What a page lets its user do.
struct WebPagePolicy
{
    bool acceptsDrops = true;
    bool startsDrags = true;
    bool hasContextMenu = true;
    bool scrolls = true;
    bool drawsBackground = true; ///< white, where the page has no ground of its own
    /// Whether text may be selected, by [start is editable][end is editable].
    std::array<std::array<bool, 2>, 2> selectable{{{true, true}, {true, true}}};
};

/// A global object of all frames of a page: functions that hand texts to the program and answer
/// nothing, and constants.
struct WebPageObject
{
    QString name; ///< a JavaScript identifier, like those below
    QStringList functions;
    QVariantMap constants;

    friend bool operator==(const WebPageObject &, const WebPageObject &) = default;
};

/// Hears of what happens in a page. Main thread.
class WebPageObserver
{
public:
    virtual ~WebPageObserver() = default;
    /// @param lineNumber 0 when the message is of no line.
    virtual void consoleMessage(const QString &message, int lineNumber,
                                const QString &sourceUrl) = 0;
    virtual void windowObjectCleared() = 0;
    virtual void startedLoading() = 0;
    virtual void finishedLoading() = 0;
    virtual void failedLoading(const QString &error) = 0;
    /// The page itself wants to go elsewhere, in one of its frames.
    virtual bool mayNavigate(const QUrl &address, bool isMainFrame) = 0;
    /// The user has pressed a key, a button or the screen in the page; no script can do that.
    virtual void usedByUser() = 0;
    /// @param function any text: the page may have made the call up.
    virtual void functionCalled(const QString &function, const QStringList &arguments) = 0;
};

/// One page on the screen. Main thread.
class WebPage
{
public:
    virtual ~WebPage() = default;
    /// Belongs to its parent; ends with it or with the page.
    virtual QWidget *widget() const = 0;
    virtual void load(const QString &html, const QUrl &baseUrl) = 0;
    virtual void load(const QUrl &address) = 0;
    /// Counts from the next load on.
    virtual void setPolicy(const WebPagePolicy &policy) = 0;
    /// Counts from the next load on, in every frame. One without a name takes it away.
    virtual void setObject(const WebPageObject &object) = 0;
    virtual void runScript(const QString &script,
                           const std::function<void(const QVariant &)> &done) = 0;
};

/// The web engine, in a module of its own, so that a program that never shows a page never loads
/// it. The module's root object has this interface.
class WebEngine
{
public:
    virtual ~WebEngine() = default;
    /// @param observer outlives the page.
    virtual std::unique_ptr<WebPage> newPage(QWidget *parent, WebPageObserver &observer) = 0;
};

#define WebEngine_iid "com.solvane.WebEngine/6"
Q_DECLARE_INTERFACE(WebEngine, WebEngine_iid)

#pragma once

#include <QString>
#include <QWebChannel>

class QWebEnginePage;
class WebPageObserver;
struct WebPageObject;

/// The way from the functions of a page's object to the program.
///
/// The page's own world holds nothing but functions that send an event to their window. A listener
/// in a world of its own, which the page's scripts cannot look into, hears it and passes the text
/// on through the one channel there is. Whatever a page finds out, or makes up, it cannot do more
/// than call the function that it was given; the observer decides which names count. Main thread.
class ScriptBridge
{
public:
    explicit ScriptBridge(WebPageObserver &observer);
    ~ScriptBridge();
    Q_DISABLE_COPY_MOVE(ScriptBridge)

    /// The channel is open to the page's application world alone.
    void connectTo(QWebEnginePage &page);

    /// For the application world.
    QString listenerScript() const;
    /// For the page's own world, before anything of the page runs.
    QString objectScript(const WebPageObject &object) const;

private:
    class Receiver;

    const QString m_eventName; ///< not to be guessed, so that it collides with nothing
    std::unique_ptr<Receiver> m_receiver;
    QWebChannel m_channel;
};

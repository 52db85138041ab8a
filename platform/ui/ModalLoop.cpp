#include "platform/ui/ModalLoop.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>
#include <QShortcutEvent>
#include <QWidget>

namespace ModalLoop {

namespace {

class Loop;

/// From the outermost to the innermost.
QList<Loop *> &running()
{
    static QList<Loop *> loops;
    return loops;
}

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

class Loop : public QObject
{
public:
    explicit Loop(QWidget *window)
        : m_window(window)
    {
        running().append(this);
        connect(window, &QObject::destroyed, this, [this] { m_loop.exit(); });
        qApp->installEventFilter(this);
    }
    ~Loop() override { running().removeOne(this); }
    Q_DISABLE_COPY_MOVE(Loop)

    QWidget *window() const { return m_window; }

    bool run()
    {
        m_loop.exec();
        // A quit that came before the main loop has begun would be forgotten by it.
        if (!m_isStopped && m_window && !m_isClosed)
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return m_isStopped;
    }

    void stop()
    {
        m_isStopped = true;
        m_loop.exit();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_window && event->type() == QEvent::HideToParent) {
            m_isClosed = true;
            m_loop.exit();
        }
        if (running().last() != this || !isInput(event->type()))
            return false;
        if (event->type() == QEvent::Shortcut) {
            const bool isQuit = QKeySequence::keyBindings(QKeySequence::Quit)
                                    .contains(static_cast<QShortcutEvent *>(event)->key());
            return !isQuit && !takesInput(watched);
        }
        return watched->isWidgetType() && !takesInput(watched);
    }

private:
    /// The window, or the frame it scrolls in.
    const QObject *room() const
    {
        const QObject *viewport = m_window ? m_window->parent() : nullptr;
        const auto *frame =
            viewport ? qobject_cast<const QAbstractScrollArea *>(viewport->parent()) : nullptr;
        return frame ? static_cast<const QObject *>(frame) : m_window;
    }

    /// Across windows: what the window's controls have opened is theirs.
    bool takesInput(const QObject *object) const
    {
        const QObject *own = room();
        const QObject *inFront = QApplication::activeModalWidget();
        const QObject *topmost = object;
        for (; object; object = object->parent()) {
            if (object == own || object == inFront)
                return true;
            topmost = object;
        }
        return topmost == QApplication::activePopupWidget();
    }

    QPointer<QWidget> m_window;
    QEventLoop m_loop;
    bool m_isStopped = false;
    bool m_isClosed = false;
};

} // namespace

bool runModalForWindow(QWidget *window)
{
    if (!window)
        return false;
    Loop loop(window);
    return loop.run();
}

void stopModal()
{
    const QList<Loop *> &loops = running();
    if (loops.isEmpty())
        return;
    const QWidget *window = loops.last()->window();
    for (auto loop = loops.rbegin(); loop != loops.rend() && (*loop)->window() == window; ++loop)
        (*loop)->stop();
}

bool isRunning()
{
    return !running().isEmpty();
}

} // namespace ModalLoop

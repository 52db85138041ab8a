#include "platform/ui/WindowFrameMemory.h"

#include "platform/foundation/SystemServices.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

WindowFrameMemory::WindowFrameMemory(QWidget *window, const QString &key)
    : QObject(window)
    , m_window(window)
    , m_key(key)
    , m_stored(systemServices().defaults->value(key).toByteArray())
{
    window->restoreGeometry(m_stored);
    window->installEventFilter(this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        if (m_window->isVisible())
            keep();
    });
}

bool WindowFrameMemory::eventFilter(QObject *window, QEvent *event)
{
    // A window that the window manager takes away, for instance with its desktop, stays where it
    // is.
    if (event->type() == QEvent::Hide && !event->spontaneous())
        keep();
    return QObject::eventFilter(window, event);
}

void WindowFrameMemory::keep()
{
    // What is laid out without being seen has no place yet.
    if (m_window->testAttribute(Qt::WA_DontShowOnScreen))
        return;
    // Shown again it would be centred: to the toolkit, what the user has moved has no place of its
    // own.
    if (QWindow *window = m_window->windowHandle())
        window->setPosition(window->position());
    const QByteArray geometry = m_window->saveGeometry();
    // Nor has one that fills the screen the size it had before.
    if (m_window->isHidden() && m_window->isMaximized())
        m_window->restoreGeometry(geometry);
    if (geometry == m_stored)
        return;
    m_stored = geometry;
    storeSetting(m_key, geometry);
}

#include "platform/ui/Application.h"

#include "platform/foundation/ExceptionText.h"
#include "platform/foundation/SystemServices.h"

#include "platform/ui/ApplicationDelegate.h"
#include "platform/ui/HostLook.h"
#include "platform/ui/ModalLoop.h"

#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

ApplicationDelegate *delegate()
{
    return qobject_cast<ApplicationDelegate *>(applicationDelegate());
}

QList<QWidget *> shownWindows()
{
    QList<QWidget *> shown;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window)
            shown << window;
    }
    return shown;
}

} // namespace

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setQuitOnLastWindowClosed(false);
    HostLook::apply();
    // Covers every orderly way out: the Quit command, the end of the desktop session.
    connect(this, &QCoreApplication::aboutToQuit, this, &Application::willTerminate);
}

Application::~Application() = default;

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        if (SystemLog *log = systemServices().systemLog)
            log->write(u"An event handler threw an exception: "_s + currentExceptionText());
        return true;
    }
}

void Application::finishLaunching()
{
    if (auto *receiver = delegate())
        receiver->applicationDidFinishLaunching();
    // Asked for in a window of the start, before there was a main loop that could have ended.
    if (m_terminating)
        QMetaObject::invokeMethod(
            this, [] { exit(); }, Qt::QueuedConnection);
}

void Application::reopen()
{
    if (auto *receiver = delegate())
        receiver->applicationShouldHandleReopen(this, !shownWindows().isEmpty());
}

bool Application::openFile(const QString &path)
{
    auto *receiver = delegate();
    return receiver && receiver->applicationOpenFile(this, path);
}

void Application::willTerminate()
{
    if (std::exchange(m_terminated, true))
        return;
    if (auto *receiver = delegate())
        receiver->applicationWillTerminate();
}

void Application::terminate(QObject *)
{
    m_terminating = true;
    quit();
    // Before the main loop has begun, quit() means nothing; a modal loop ends by this.
    if (ModalLoop::isRunning())
        exit();
}

void Application::hide(QObject *)
{
    for (QWidget *window : shownWindows())
        window->close();
}

void Application::performMiniaturize(QObject *)
{
    if (QWidget *window = activeWindow())
        window->showMinimized();
}

void Application::performZoom(QObject *)
{
    QWidget *window = activeWindow();
    if (!window)
        return;
    if (window->isMaximized())
        window->showNormal();
    else
        window->showMaximized();
}

void Application::arrangeInFront(QObject *)
{
    for (QWidget *window : shownWindows())
        window->raise();
}

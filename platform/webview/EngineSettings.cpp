#include "platform/webview/EngineSettings.h"

#include <QApplication>
#include <QByteArray>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <QStyle>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

QT_BEGIN_NAMESPACE
// Exported for the engine's own use; it has no public declaration.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext *context);
Q_GUI_EXPORT QOpenGLContext *qt_gl_global_share_context();
QT_END_NAMESPACE

namespace {

/// The engine takes it for granted that the program has started with a context that all windows
/// share. One that was never created tells it that there is nothing to share: making a real one
/// would load a graphics driver into every start of the program.
void lendEmptyContext()
{
    if (!qt_gl_global_share_context())
        qt_gl_set_global_share_context(new QOpenGLContext(qApp));
}

/// The sandbox refuses to work for root, and needs a user name space; in many containers there is
/// none, and the engine would end the whole program.
bool canHaveSandbox()
{
    if (::geteuid() == 0)
        return false;
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(::unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
    int status = -1;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

} // namespace

void prepareEngine()
{
    // Pages of ours are small: drawing them in software spares the start of a graphics driver, and
    // works on every machine alike.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    lendEmptyContext();
    QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    for (const char *flag : {"--disable-gpu", "--disable-dev-shm-usage"}) {
        if (!flags.contains(flag))
            flags += ' ' + QByteArray(flag);
    }
    // The engine does not ask this desktop by itself.
    if (QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0)
        flags += " --force-prefers-reduced-motion";
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags.trimmed());
    if (!canHaveSandbox())
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

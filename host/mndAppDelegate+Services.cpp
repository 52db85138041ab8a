#include "host/mndAppDelegate.h"

#include "platform/foundation/ClassRegistry.h"
#include "platform/foundation/MainThread.h"
#include "platform/ui/DesktopServices.h"
#include "plugin_host/mndPlugins.h"

using namespace Qt::StringLiterals;

std::unique_ptr<QObject> mndAppDelegate::newFactoryInstance(const QString &className)
{
    return ClassRegistry::newInstance(className);
}

void mndAppDelegate::sharedObjectRegister(const QString &name, QObject *object)
{
    if (object)
        m_Factory.insert(name, object);
    else
        m_Factory.remove(name);
}

QObject *mndAppDelegate::sharedObject(const QString &name)
{
    return m_Factory.value(name);
}

void mndAppDelegate::signalAllPlugins(const Selector &selector)
{
    if (m_Plugins)
        m_Plugins->performSelectorOnAllDelegates(selector);
}

bool mndAppDelegate::uiModalShowing()
{
    return _isModalShowing != 0;
}

void mndAppDelegate::beginModalSheet(QWidget *window)
{
    if (uiModalShowing())
        return;
    ++_isModalShowing;
    MainThread::runLater([self = QPointer(this), sheet = QPointer(window)] {
        if (self)
            self->_beginModalSheet(sheet);
    });
}

void mndAppDelegate::endModalSheet(QWidget *window)
{
    --_isModalShowing;
    MainThread::runLater([self = QPointer(this), sheet = QPointer(window)] {
        if (self)
            self->_endModalSheet(sheet);
    });
}

void mndAppDelegate::_beginModalSheet(QWidget *window)
{
    if (!_window || !window)
        return;
    if (sourceList)
        sourceList->hide();
    mndPlugins::recurseSubViews(window);
    _window->beginSheet(window);
    if (sourceList)
        sourceList->show();
}

void mndAppDelegate::_endModalSheet(QWidget *window)
{
    if (_window && window)
        _window->endSheet(window);
    _uiRevertToSystemTouchbar();
}

std::unique_ptr<Drawer> mndAppDelegate::newDrawerWithContent(QWidget *content)
{
    constexpr quint64 rightEdge = 2;
    return newDrawerWithContent(content, rightEdge);
}

// The main window has no drawers yet.
std::unique_ptr<Drawer> mndAppDelegate::newDrawerWithContent(QWidget *, quint64)
{
    return nullptr;
}

void mndAppDelegate::uiButtonSetTextColor(QAbstractButton *button, const QColor &color)
{
    if (m_Plugins)
        mndPlugins::setButtonStringColor(button, color);
}

void mndAppDelegate::uiMaximize()
{
    MainThread::runAndWait([this] { _uiMaximize(); });
}

void mndAppDelegate::uiRestore()
{
    MainThread::runAndWait([this] { _uiRestore(); });
}

void mndAppDelegate::_uiMaximize()
{
    if (!_window)
        return;
    _oldFrame = _window->frameGeometry();
    _window->setFrame(desktopServices().screen->visibleFrame(_window));
}

void mndAppDelegate::_uiRestore()
{
    if (!_window)
        return;
    const QRect frame = _window->frameGeometry();
    if (frame.width() == desktopServices().screen->visibleFrame(_window).width())
        _window->setFrame(_oldFrame.toRect());
    else
        _oldFrame = frame;
}

QWidget *mndAppDelegate::uiSystemStatusView()
{
    return sysStatusView;
}

// No view of this build is a web view, and any other view is left alone.
void mndAppDelegate::uiCreateIndeterminateSpinner(QWidget *) { }
void mndAppDelegate::uiFreeIndeterminateSpinner(QWidget *) { }

mndTheme *mndAppDelegate::uiTheme()
{
    return _theme.get();
}

#include "host/mndAppDelegate.h"

#include "platform/foundation/ClassRegistry.h"
#include "platform/foundation/MainThread.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/EdgeDrawer.h"
#include "plugin_host/mndPlugins.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

void mndAppDelegate::tellOfWrongCall(const char *selector, const QString &what) const
{
    if (m_observer)
        m_observer->callIsWrong(QString::fromLatin1(selector) + u' ' + what);
}

void mndAppDelegate::expectMainThread(const char *selector) const
{
    if (!MainThread::isCurrent())
        tellOfWrongCall(selector, u"is for the main thread"_s);
}

std::unique_ptr<QObject> mndAppDelegate::newFactoryInstance(const QString &className)
{
    const QMetaObject *meta = ClassRegistry::metaObject(className);
    if (!meta)
        tellOfWrongCall("newFactoryInstance:", u"no class is named \"%1\""_s.arg(className));
    if (!meta || !meta->inherits(&QWidget::staticMetaObject))
        return ClassRegistry::newInstance(className);
    // A view lives on the main thread, whoever wants it.
    std::unique_ptr<QObject> view;
    MainThread::runAndWait([&] { view = ClassRegistry::newInstance(className); });
    return view;
}

void mndAppDelegate::sharedObjectRegister(const QString &name, QObject *object)
{
    m_Factory.set(name, object);
}

QObject *mndAppDelegate::sharedObject(const QString &name)
{
    return m_Factory.object(name);
}

void mndAppDelegate::signalAllPlugins(const Selector &selector)
{
    expectMainThread("signalAllPlugins:");
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
        return tellOfWrongCall("beginModalSheet:",
                               u"dropped: the count of sheets is %1"_s.arg(_isModalShowing));
    ++_isModalShowing;
    MainThread::runLater([self = QPointer(this), sheet = QPointer(window)] {
        if (self)
            self->_beginModalSheet(sheet, MainWindow::InTurn);
    });
}

void mndAppDelegate::endModalSheet(QWidget *window)
{
    if (--_isModalShowing < 0)
        tellOfWrongCall("endModalSheet:",
                        u"ends more sheets than were begun: no sheet shows any more"_s);
    MainThread::runLater([self = QPointer(this), sheet = QPointer(window)] {
        if (self)
            self->_endModalSheet(sheet);
    });
}

void mndAppDelegate::_beginModalSheet(QWidget *window, MainWindow::SheetOrder order)
{
    if (!_window || !window)
        return;
    // A hidden sidebar passes the keyboard on; it gets it back when the sheet has ended.
    QWidget *focus = _window->focusWidget();
    if (sourceList)
        sourceList->hide();
    // Also when a view throws while it is asked for its size.
    const auto showAgain = qScopeGuard([list = sourceList] {
        if (list)
            list->show();
    });
    if (m_Plugins)
        mndPlugins::recurseSubViews(window);
    _window->beginSheet(window, focus, order);
}

void mndAppDelegate::_endModalSheet(QWidget *window)
{
    if (_window)
        _window->endSheet(window);
    _uiRevertToSystemTouchbar();
}

std::unique_ptr<Drawer> mndAppDelegate::newDrawerWithContent(QWidget *content)
{
    return newDrawerWithContent(content, EdgeDrawer::Right);
}

std::unique_ptr<Drawer> mndAppDelegate::newDrawerWithContent(QWidget *content, quint64 edge)
{
    std::unique_ptr<Drawer> drawer;
    MainThread::runAndWait([&] {
        if (m_Plugins)
            mndPlugins::recurseSubViews(content);
        drawer = std::make_unique<EdgeDrawer>(content, _window, edge);
    });
    // The main loop may have ended: one that opens nothing.
    return drawer ? std::move(drawer) : std::make_unique<EdgeDrawer>(nullptr, nullptr, edge);
}

void mndAppDelegate::uiButtonSetTextColor(QAbstractButton *button, const QColor &color)
{
    expectMainThread("uiButtonSetTextColor:col:");
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
    _oldFrame = _window->frame();
    m_frameIsUnplaced = false;
    _window->setFrame(desktopServices().screen->visibleFrame(_window));
}

void mndAppDelegate::_uiRestore()
{
    if (!_window)
        return;
    const QRect frame = _window->frame();
    if (frame.width() == desktopServices().screen->visibleFrame(_window).width()) {
        _window->setFrame(_oldFrame.toRect());
        return;
    }
    _oldFrame = frame;
    m_frameIsUnplaced = false;
}

QWidget *mndAppDelegate::uiSystemStatusView()
{
    return sysStatusView;
}

mndTheme *mndAppDelegate::uiTheme()
{
    return _theme.get();
}

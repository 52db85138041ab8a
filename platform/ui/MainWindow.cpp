#include "platform/ui/MainWindow.h"

#include "platform/ui/DesktopServices.h"
#include "platform/ui/Sheet.h"
#include "platform/ui/TouchBarStrip.h"
#include "platform/ui/X11.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QScopeGuard>
#include <QShortcut>

#include <algorithm>

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    new QShortcut(Qt::Key_F10, this, this, &MainWindow::openMenus);
    new QShortcut(QKeySequence::Close, this, this, &QWidget::close);
}

void MainWindow::setBackgroundColor(const QColor &color)
{
    QPalette ground = palette();
    ground.setColor(QPalette::Window, color);
    setPalette(ground);
    layGroundUnderTitlebar();
}

bool MainWindow::supportsTitlebarAccessories() const
{
    return menuWidget() && !menuBar()->isNativeMenuBar();
}

void MainWindow::addTitlebarAccessory(QWidget *view)
{
    if (!view || !menuWidget())
        return;
    delete m_accessory;
    m_accessory = view;
    view->setParent(menuBar());
    view->setAttribute(Qt::WA_TransparentForMouseEvents);
    view->lower();
    view->show();
    layOutAccessory();
}

void MainWindow::setTitlebarAppearsTransparent(bool transparent)
{
    m_titlebarIsTransparent = transparent;
    layGroundUnderTitlebar();
}

void MainWindow::layGroundUnderTitlebar()
{
    if (!menuWidget())
        return;
    // Styles paint all of the bar: seen through is what has the same colour.
    QPalette bar;
    if (m_titlebarIsTransparent)
        bar.setColor(QPalette::Window, palette().color(QPalette::Window));
    menuBar()->setPalette(bar);
}

QRect MainWindow::frame()
{
    // Of new borders the program hears after the new size: those of a large window may still be the
    // ones it had before, which would reach beyond the screen.
    if (isMaximized() || isFullScreen())
        return frameGeometry() & desktopServices().screen->visibleFrame(this);
    const QRect outer = frameGeometry();
    const QRect inner = geometry();
    m_borders = QMargins(inner.left() - outer.left(), inner.top() - outer.top(),
                         outer.right() - inner.right(), outer.bottom() - inner.bottom());
    return outer;
}

void MainWindow::setFrame(const QRect &frame)
{
    if (!frame.isValid())
        return;
    // A maximised window has other borders than the one it is going to be.
    if (isMaximized() || isFullScreen())
        showNormal();
    else
        this->frame();
    setGeometry(frame.marginsRemoved(m_borders));
}

void MainWindow::comeForward()
{
    X11::bringToCurrentDesktop(*this);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::center()
{
    const QRect room = desktopServices().screen->visibleFrame(this);
    if (!room.isValid() || isMaximized() || isFullScreen())
        return;
    QRect frame = frameGeometry();
    frame.moveCenter(room.center());
    move(frame.topLeft());
}

QWidget *MainWindow::contentView() const
{
    return centralWidget();
}

void MainWindow::beginSheet(QWidget *view, QWidget *focusAfterwards, SheetOrder order)
{
    const QWidget *content = contentView();
    if (!view || !content || view == content || view->isAncestorOf(content))
        return;
    // Hidden by its owner, who is ready for the next.
    if (sheetShows() && m_sheet->view()->isHidden())
        m_sheet->end();
    if (sheetShows() && m_sheet->view() == view)
        return;
    // What has the keyboard in a sheet is gone when that one has ended.
    QWidget *focus = sheetShows() ? m_sheet->focusAfterwards()
        : focusAfterwards         ? focusAfterwards
                                  : focusWidget();
    const SheetRequest request{view, focus};
    if (order == InFront) {
        stopWaiting(view);
        if (sheetShows()) {
            m_waitingSheets.prepend({m_sheet->view(), focus});
            m_sheet->end();
        }
        m_waitingSheets.prepend(request);
    } else if (!std::any_of(m_waitingSheets.cbegin(), m_waitingSheets.cend(),
                            [&](const SheetRequest &one) { return one.view == view; })) {
        m_waitingSheets.append(request);
    }
    showNextSheet();
}

void MainWindow::endSheet(QWidget *view)
{
    if (!view)
        return;
    if (m_sheet && m_sheet->view() == view)
        return m_sheet->end();
    stopWaiting(view);
    if (view->isWindow() && view != this && !view->isAncestorOf(this))
        view->hide();
}

bool MainWindow::sheetShows() const
{
    return m_sheet && m_sheet->view();
}

void MainWindow::stopWaiting(const QWidget *view)
{
    m_waitingSheets.removeIf([view](const SheetRequest &one) { return one.view == view; });
}

void MainWindow::showNextSheet()
{
    while (!m_waitingSheets.isEmpty() && !sheetShows() && contentView()) {
        const SheetRequest next = m_waitingSheets.takeFirst();
        if (!next.view)
            continue;
        // One that cannot be shown does not keep the others waiting.
        auto goOn = qScopeGuard([this] {
            QMetaObject::invokeMethod(this, &MainWindow::showNextSheet, Qt::QueuedConnection);
        });
        m_sheet = new Sheet(next.view, contentView(), next.focusAfterwards);
        goOn.dismiss();
        connect(m_sheet, &Sheet::gaveBack, this, &MainWindow::showNextSheet, Qt::QueuedConnection);
    }
}

void MainWindow::raiseInContent(QWidget *panel)
{
    panel->raise();
    if (sheetShows())
        panel->stackUnder(m_sheet);
}

bool MainWindow::event(QEvent *event)
{
    if (event->type() != TouchBar::installedEvent())
        return QMainWindow::event(event);
    if (!m_touchBarStrip)
        m_touchBarStrip = TouchBarStrip::addTo(this);
    m_touchBarStrip->refresh();
    return true;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    auto *delegate = qobject_cast<WindowDelegate *>(m_delegate);
    event->setAccepted(!delegate || delegate->windowShouldClose(this));
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    layOutAccessory();
    if (auto *delegate = qobject_cast<WindowDelegate *>(m_delegate))
        delegate->windowDidResize(this);
}

void MainWindow::openMenus()
{
    if (!menuWidget() || menuBar()->isNativeMenuBar())
        return;
    for (QAction *menu : menuBar()->actions()) {
        if (menu->isVisible() && menu->isEnabled())
            return menuBar()->setActiveAction(menu);
    }
}

void MainWindow::layOutAccessory()
{
    if (!m_accessory)
        return;
    const int shift = (width() - m_accessory->width()) / 2;
    m_accessory->resize(width(), m_accessory->height());
    const auto subviews = m_accessory->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *subview : subviews)
        subview->move(subview->x() + shift, subview->y());
}

#include "platform/ui/MainWindow.h"

#include "platform/ui/Sheet.h"

#include <QCloseEvent>
#include <QMenuBar>

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{ }

void MainWindow::setBackgroundColor(const QColor &color)
{
    QPalette ground = palette();
    ground.setColor(QPalette::Window, color);
    setPalette(ground);
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
    if (menuWidget())
        menuBar()->setAutoFillBackground(!transparent);
}

void MainWindow::setFrame(const QRect &frame)
{
    if (!frame.isValid())
        return;
    const QMargins borders(geometry().left() - frameGeometry().left(),
                           geometry().top() - frameGeometry().top(),
                           frameGeometry().right() - geometry().right(),
                           frameGeometry().bottom() - geometry().bottom());
    setGeometry(frame.marginsRemoved(borders));
}

void MainWindow::beginSheet(QWidget *view)
{
    if (view && !m_sheet)
        m_sheet = new Sheet(view, centralWidget() ? centralWidget() : this);
}

void MainWindow::endSheet(QWidget *view)
{
    if (m_sheet && m_sheet->view() == view)
        delete m_sheet;
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

#include "platform/ui/TouchBarStrip.h"

#include "platform/ui/DesktopServices.h"
#include "platform/ui/HostColors.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QStatusBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int stripHeight = 40;
constexpr int stripMargin = 12;
constexpr int itemGap = 16;

void paintStripGround(QWidget *widget)
{
    QPalette colors = widget->palette();
    colors.setColor(QPalette::Window, HostColors::stripGround);
    widget->setPalette(colors);
    widget->setAutoFillBackground(true);
}

QList<QWidget *> controlsIn(const QWidget *view)
{
    QList<QWidget *> controls = view->findChildren<QWidget *>();
    controls.removeIf([](const QWidget *each) { return each->focusPolicy() == Qt::NoFocus; });
    return controls;
}

} // namespace

TouchBarStrip *TouchBarStrip::addTo(QMainWindow *window)
{
    QStatusBar *foot = window->statusBar(); // made by this call
    foot->setSizeGripEnabled(false);
    paintStripGround(foot);
    auto *strip = new TouchBarStrip(window);
    foot->addWidget(strip, 1);
    const QRect room = desktopServices().screen->visibleFrame(window);
    const int height = window->minimumHeight() + foot->sizeHint().height();
    window->setMinimumHeight(
        room.isValid() ? std::min(height, room.height() - Screen::windowBorders) : height);
    return strip;
}

TouchBarStrip::TouchBarStrip(QMainWindow *window)
    : QScrollArea(window)
{
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFixedHeight(stripHeight);
    auto *content = new QWidget;
    m_row = new QHBoxLayout(content);
    m_row->setContentsMargins(stripMargin, 0, stripMargin, 0);
    m_row->setSpacing(itemGap);
    m_row->addStretch();
    setWidget(content);
    paintStripGround(content);
    m_keyboard = window->focusWidget();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        if (!now || now->window() != this->window() || isAncestorOf(now))
            return;
        m_keyboard = now;
        if (barInForce(now) != m_bar)
            refresh();
    });
}

TouchBar *TouchBarStrip::barInForce(QWidget *focused) const
{
    for (QWidget *view = focused; view && view != window(); view = view->parentWidget()) {
        if (TouchBar *bar = TouchBar::installed(view))
            return bar;
    }
    return TouchBar::installed(window());
}

void TouchBarStrip::refresh()
{
    TouchBar *bar = barInForce(m_keyboard);
    if (bar && bar == m_bar)
        return;
    show(bar);
}

void TouchBarStrip::show(TouchBar *bar)
{
    QWidget *focused = isAncestorOf(window()->focusWidget()) ? window()->focusWidget() : nullptr;
    const QList<QWidget *> former = std::exchange(m_views, {});
    m_bar = bar;
    QStringList identifiers = bar ? bar->defaultItemIdentifiers() : QStringList();
    for (const QString &identifier : identifiers) {
        if (!m_bar)
            break; // taken away by whoever builds its items
        const std::unique_ptr<TouchBarItem> item = m_bar->makeItem(identifier);
        if (!item || !item->view)
            continue;
        QWidget *view = item->view.release();
        m_row->insertWidget(m_row->count() - 1, view);
        view->show();
        m_views << view;
    }
    // The keyboard stays in the strip, on the button in the same place where there still is one.
    if (focused) {
        QList<QWidget *> before;
        for (const QWidget *view : former)
            before += controlsIn(view);
        QList<QWidget *> after;
        for (const QWidget *view : m_views)
            after += controlsIn(view);
        if (!after.isEmpty())
            after[std::clamp<qsizetype>(before.indexOf(focused), 0, after.size() - 1)]->setFocus();
        else if (m_keyboard)
            m_keyboard->setFocus();
    }
    for (QWidget *view : former) {
        view->hide();
        m_row->removeWidget(view);
        view->deleteLater(); // one of its buttons may be what has led here
    }
    parentWidget()->setVisible(bar);
}

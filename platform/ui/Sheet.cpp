#include "platform/ui/Sheet.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

Sheet::Sheet(QWidget *view, QWidget *window)
    : QWidget(window)
    , m_view(view)
    , m_focusBefore(QApplication::focusWidget())
{
    window->installEventFilter(this);
    const QSize size = view->size();
    view->setParent(this);
    view->resize(size);
    view->setAutoFillBackground(true);
    layOut();
    view->show();
    show();
    raise();
    setFocusPolicy(Qt::StrongFocus);
    if (QWidget *first = view->nextInFocusChain(); first && view->isAncestorOf(first))
        first->setFocus();
    else
        setFocus();
}

Sheet::~Sheet()
{
    if (m_view) {
        m_view->hide();
        m_view->setParent(nullptr);
    }
    if (m_focusBefore)
        m_focusBefore->setFocus();
}

void Sheet::layOut()
{
    setGeometry(parentWidget()->rect());
    if (m_view)
        m_view->move((width() - m_view->width()) / 2, 0);
}

void Sheet::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), QColor(0, 0, 0, 90));
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        layOut();
    return false;
}

bool Sheet::focusNextPrevChild(bool next)
{
    QWidget *current = focusWidget() ? focusWidget() : this;
    QWidget *candidate = current;
    do {
        candidate = next ? candidate->nextInFocusChain() : candidate->previousInFocusChain();
        const bool takesFocus = candidate->focusPolicy() & Qt::TabFocus;
        if (candidate != this && isAncestorOf(candidate) && takesFocus && candidate->isVisible()
            && candidate->isEnabled()) {
            candidate->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    } while (candidate != current);
    return true;
}

#include "platform/ui/Sheet.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QWheelEvent>

namespace {

constexpr int sideMargin = 16;
constexpr int roundedFoot = 10; ///< height of the strip that rounds the card off
constexpr int shadowWidth = 14;

class AccessibleSheet : public QAccessibleWidget
{
public:
    explicit AccessibleSheet(QWidget *sheet)
        : QAccessibleWidget(sheet, QAccessible::Dialog)
    { }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = true;
        return state;
    }
};

QAccessibleInterface *accessibleSheet(const QString &, QObject *object)
{
    auto *sheet = qobject_cast<Sheet *>(object);
    return sheet ? new AccessibleSheet(sheet) : nullptr;
}

} // namespace

Sheet::Sheet(QWidget *view, QWidget *content, QWidget *focusAfterwards)
    : QWidget(content)
    , m_frame(new BorrowedView(view, this))
    , m_focusAfterwards(focusAfterwards)
    , m_slide(content)
{
    QAccessible::installFactory(accessibleSheet);
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::TabFocus);
    setAcceptDrops(true); // and so drops do not reach what lies below
    setAccessibleName(m_frame->title());
    m_ground = view->palette().color(view->backgroundRole());
    qApp->installEventFilter(this);
    connect(&m_slide, &Slide::moved, this, &Sheet::layOut);
    connect(&m_slide, &Slide::arrived, this, [this] {
        if (m_hasEnded)
            deleteLater();
    });
    connect(m_frame, &BorrowedView::viewResized, this, &Sheet::layOut);
    connect(m_frame, &BorrowedView::lost, this, &Sheet::end);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { keepFocus(now); });
    layOut();
    show();
    raise();
    takeFocus();
    QAccessibleEvent begun(this, QAccessible::DialogStart);
    QAccessible::updateAccessibility(&begun);
    m_slide.moveTo(1);
}

void Sheet::end()
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    const QWidget *focused = window()->focusWidget();
    const bool hadFocus = !focused || focused == this || isAncestorOf(focused);
    if (m_frame->view() && isVisible())
        m_picture = m_frame->grab();
    m_frame->giveBack();
    m_frame->hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    QAccessibleEvent ended(this, QAccessible::DialogEnd);
    QAccessible::updateAccessibility(&ended);
    if (hadFocus && m_focusAfterwards)
        m_focusAfterwards->setFocus();
    m_slide.moveTo(0);
    // Whoever arrives at once is gone at once for everyone who looks.
    if (m_slide.position() <= 0)
        hide();
    Q_EMIT gaveBack();
}

QRect Sheet::card() const
{
    return m_frame->geometry().adjusted(0, 0, 0, roundedFoot);
}

void Sheet::layOut()
{
    setGeometry(parentWidget()->rect());
    m_frame->fitInto(size() - QSize(2 * sideMargin, roundedFoot + sideMargin));
    const qreal hidden = (1 - m_slide.position()) * (card().height() + shadowWidth);
    m_frame->move((width() - m_frame->width()) / 2, -qRound(hidden));
    update();
}

void Sheet::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.fillRect(rect(), QColor(20, 34, 48, qRound(96 * m_slide.position())));
    // Above the edge nothing is rounded, nor is there a shadow.
    const QRectF shape = QRectF(card()).adjusted(0, -2 * roundedFoot, 0, 0);
    for (int reach = shadowWidth; reach > 0; --reach) {
        painter.setBrush(QColor(10, 20, 30, 7));
        painter.drawRoundedRect(shape.adjusted(-reach, 0, reach, reach), roundedFoot + reach,
                                roundedFoot + reach);
    }
    painter.setBrush(m_ground);
    painter.drawRoundedRect(shape, roundedFoot, roundedFoot);
    if (!m_picture.isNull())
        painter.drawPixmap(m_frame->pos(), m_picture);
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
        if (watched == parentWidget())
            layOut();
        return false;
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
        return !m_hasEnded && isBelow(watched);
    default:
        return false;
    }
}

bool Sheet::isBelow(const QObject *object) const
{
    for (; object && object != this; object = object->parent()) {
        if (object == parentWidget())
            return true;
    }
    return false;
}

void Sheet::takeFocus()
{
    QWidget *first = m_frame->firstControl();
    (first ? first : this)->setFocus(Qt::OtherFocusReason);
}

void Sheet::keepFocus(QWidget *now)
{
    if (m_hasEnded || !now)
        return;
    if (now == this || isAncestorOf(now))
        m_lastFocus = now;
    else if (parentWidget()->isAncestorOf(now) && m_lastFocus && m_lastFocus->isVisible())
        m_lastFocus->setFocus();
    else if (parentWidget()->isAncestorOf(now))
        takeFocus();
}

bool Sheet::focusNextPrevChild(bool next)
{
    QWidget *current = window()->focusWidget();
    if (!current || !isAncestorOf(current))
        current = this;
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

/// Nothing reaches the content below. Return presses the button that has the keyboard, or else the
/// default one.
void Sheet::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    if (!view() || (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter))
        return;
    auto *button = qobject_cast<QPushButton *>(window()->focusWidget());
    const auto all = view()->findChildren<QPushButton *>();
    for (auto candidate = all.begin(); !button && candidate != all.end(); ++candidate) {
        if ((*candidate)->isDefault() && (*candidate)->isVisible())
            button = *candidate;
    }
    if (button)
        button->click();
}

void Sheet::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

void Sheet::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
}

#include "platform/ui/BorrowedView.h"

#include <QEvent>
#include <QLabel>
#include <QScopeGuard>
#include <QScrollBar>
#include <QStyle>

#include <utility>

namespace {

/// A window that never got a size of its own is as large as its content asks for.
QSize ownSize(QWidget *view)
{
    if (!view->testAttribute(Qt::WA_Resized))
        view->adjustSize();
    return view->size().expandedTo(view->minimumSizeHint()).expandedTo(view->minimumSize());
}

/// Whatever the view's owner has made of its virtual methods.
void hideQuietly(QWidget *view)
{
    try {
        view->hide();
    } catch (...) {
        view->QWidget::setVisible(false);
    }
}

} // namespace

BorrowedView::BorrowedView(QWidget *view, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    resize(0, 0);
    if (!view || view == parent || view->isAncestorOf(parent))
        return;
    for (const QWidget *above = parent; above; above = above->parentWidget()) {
        if (above == view)
            return;
    }
    const QSize size = ownSize(view);
    m_view = view;
    rememberOwner();
    // A view that throws meanwhile must not end with the viewport it is already in.
    auto undo = qScopeGuard([this] { giveBack(); });
    view->hide();
    view->setParent(viewport(), m_formerFlags & ~Qt::WindowType_Mask);
    setWidget(view);
    view->resize(size);
    view->show();
    undo.dismiss();
    view->installEventFilter(this);
    connect(view, &QObject::destroyed, this, [this] {
        m_view = nullptr; // it still is one for a guarded pointer, but not for anyone else
        lose();
    });
}

BorrowedView::~BorrowedView()
{
    giveBack();
}

void BorrowedView::rememberOwner()
{
    const QWidget *above =
        m_view->parentWidget() ? m_view->parentWidget()->parentWidget() : nullptr;
    const auto *lender = qobject_cast<const BorrowedView *>(above);
    if (lender && lender->m_view == m_view) {
        // Somebody has borrowed it already, and may end before this does.
        m_formerParent = lender->m_formerParent;
        m_formerFlags = lender->m_formerFlags;
        m_filledBackground = lender->m_filledBackground;
        return;
    }
    m_formerParent = m_view->parentWidget();
    m_formerFlags = m_view->windowFlags();
    m_filledBackground = m_view->autoFillBackground();
}

void BorrowedView::giveBack()
{
    QWidget *view = std::exchange(m_view, nullptr);
    if (!view)
        return;
    view->removeEventFilter(this);
    view->disconnect(this);
    hideQuietly(view);
    takeWidget();
    view->setAutoFillBackground(m_filledBackground);
    view->setParent(m_formerParent, m_formerFlags);
}

void BorrowedView::lose()
{
    if (m_view) {
        m_view->removeEventFilter(this);
        // Hidden where it is: it goes back before this ends, unless someone has taken it.
        if (m_view->parentWidget() == viewport())
            giveBack();
    }
    m_view = nullptr;
    Q_EMIT lost();
}

bool BorrowedView::eventFilter(QObject *watched, QEvent *event)
{
    const bool isView = watched == m_view;
    if (isView && event->type() == QEvent::ParentChange && m_view->parentWidget() != viewport()) {
        lose();
        return false;
    }
    if (isView && event->type() == QEvent::HideToParent) {
        // The view is in the middle of hiding itself.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_view && m_view->isHidden())
                    lose();
            },
            Qt::QueuedConnection);
    }
    const bool handled = QScrollArea::eventFilter(watched, event);
    if (isView && event->type() == QEvent::Resize)
        Q_EMIT viewResized();
    return handled;
}

void BorrowedView::fitInto(QSize room, QSize wanted)
{
    if (!m_view)
        return;
    QSize size = wanted.isValid() ? wanted : m_view->size();
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const bool isTooTall = size.height() > room.height();
    if (isTooTall)
        size.rwidth() += bar;
    const bool isTooWide = size.width() > room.width();
    if (isTooWide)
        size.rheight() += bar;
    // What scrolls has to scroll by keyboard, too.
    setFocusPolicy(isTooTall || isTooWide ? Qt::TabFocus : Qt::NoFocus);
    resize(size.boundedTo(room));
}

QString BorrowedView::title() const
{
    if (!m_view)
        return {};
    for (const QString &name : {m_view->accessibleName(), m_view->windowTitle()}) {
        if (!name.isEmpty())
            return name;
    }
    for (const QLabel *label : m_view->findChildren<QLabel *>()) {
        if (!label->isHidden() && !label->text().isEmpty())
            return label->text();
    }
    return {};
}

QWidget *BorrowedView::firstControl() const
{
    if (!m_view)
        return nullptr;
    // What the owner has chosen comes first.
    QWidget *candidate = m_view->focusWidget();
    if (!candidate || candidate == m_view)
        candidate = m_view;
    for (const QWidget *first = candidate;;) {
        const bool isInside = candidate == m_view || m_view->isAncestorOf(candidate);
        if (isInside && (candidate->focusPolicy() & Qt::TabFocus) && candidate->isEnabled()
            && candidate->isVisibleTo(m_view)) {
            return candidate;
        }
        candidate = candidate->nextInFocusChain();
        if (candidate == first)
            return nullptr;
    }
}

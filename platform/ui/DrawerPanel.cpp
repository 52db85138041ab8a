#include "platform/ui/DrawerPanel.h"

#include "platform/ui/HostColors.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int shadowWidth = 12;

} // namespace

DrawerPanel::DrawerPanel(QWidget *content, QWidget *area, EdgeDrawer::Edge edge)
    : QWidget(area)
    , m_frame(new BorrowedView(content, this))
    , m_contentSize(m_frame->view() ? content->size() : QSize())
    , m_edge(edge)
    , m_slide(area)
{
    hide();
    setAttribute(Qt::WA_NoMousePropagation);
    area->installEventFilter(this);
    connect(&m_slide, &Slide::moved, this, &DrawerPanel::layOut);
    connect(&m_slide, &Slide::arrived, this, [this] { setVisible(m_isOpen); });
    connect(m_frame, &BorrowedView::lost, this, [this] {
        giveFocusBack();
        m_isOpen = false;
        hide();
    });
    layOut();
}

void DrawerPanel::open()
{
    if (m_isOpen || !m_frame->view())
        return;
    m_isOpen = true;
    m_focusBefore = window()->focusWidget();
    setAccessibleName(m_frame->title());
    show();
    m_slide.moveTo(1);
}

void DrawerPanel::close()
{
    if (!m_isOpen)
        return;
    giveFocusBack();
    m_isOpen = false;
    m_slide.moveTo(0);
}

void DrawerPanel::discard()
{
    giveFocusBack();
    m_frame->giveBack();
    m_isOpen = false;
    hide();
    deleteLater();
}

void DrawerPanel::giveFocusBack()
{
    if (m_isOpen && m_focusBefore && isAncestorOf(window()->focusWidget()))
        m_focusBefore->setFocus();
}

/// The panel is the content and, around it, its shadow; the one on the window's edge is cut off.
void DrawerPanel::layOut()
{
    const QSize room = parentWidget()->size();
    const QSize shadow =
        isUpright() ? QSize(shadowWidth, 2 * shadowWidth) : QSize(2 * shadowWidth, shadowWidth);
    m_frame->fitInto(room - shadow, m_contentSize);
    const QSize size = m_frame->size() + shadow;
    const QPoint middle((room.width() - size.width()) / 2, (room.height() - size.height()) / 2);
    const qreal open = m_slide.position();
    const int across = qRound(size.width() * open);
    const int down = qRound(size.height() * open);
    resize(size);
    switch (m_edge) {
    case EdgeDrawer::Left:
        m_frame->move(0, shadowWidth);
        move(across - size.width(), middle.y());
        break;
    case EdgeDrawer::Right:
        m_frame->move(shadowWidth, shadowWidth);
        move(room.width() - across, middle.y());
        break;
    case EdgeDrawer::Top:
        m_frame->move(shadowWidth, 0);
        move(middle.x(), down - size.height());
        break;
    case EdgeDrawer::Bottom:
        m_frame->move(shadowWidth, shadowWidth);
        move(middle.x(), room.height() - down);
        break;
    }
}

void DrawerPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF panel = m_frame->geometry();
    painter.setBrush(QColor(10, 20, 30, 7));
    for (int reach = shadowWidth; reach > 0; --reach)
        painter.drawRoundedRect(panel.adjusted(-reach, -reach, reach, reach), reach, reach);
    painter.fillRect(panel.adjusted(-1, -1, 1, 1), HostColors::edge);
}

bool DrawerPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        layOut();
    return false;
}

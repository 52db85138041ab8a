#include "platform/ui/OutlineView.h"
#include "platform/ui/OutlineViewModel.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

namespace {

/// Two-thirds of a row's height drop onto it; the rest, before and after it.
constexpr qreal edgeShare = 1.0 / 6;

} // namespace

std::unique_ptr<QMimeData> OutlineView::pasteboardFor(const QList<OutlineItem> &items)
{
    std::unique_ptr<QMimeData> pasteboard;
    for (OutlineItem item : items) {
        const auto written = source()->outlineViewPasteboardWriterForItem(this, item);
        if (!written)
            continue;
        if (!pasteboard)
            pasteboard = std::make_unique<QMimeData>();
        const QStringList formats = written->formats();
        for (const QString &format : formats) {
            if (!pasteboard->hasFormat(format))
                pasteboard->setData(format, written->data(format));
        }
    }
    if (pasteboard)
        return pasteboard;
    pasteboard = std::make_unique<QMimeData>();
    if (!source()->outlineViewWriteItems(this, items, pasteboard.get()))
        pasteboard.reset();
    return pasteboard;
}

/// Drags the row at the position, with all selected ones if it is one of them. False, with nothing
/// done, when the data source gives nothing to drag. Returns when the drag is over.
bool OutlineView::dragRows(const QPointF &position)
{
    const int row = rowAtPoint(position);
    QList<OutlineItem> items;
    if (isRowSelected(row))
        items = selectedItems();
    else if (OutlineItem item = itemAtRow(row))
        items << item;
    if (items.isEmpty())
        return false;
    auto pasteboard = pasteboardFor(items);
    if (!pasteboard)
        return false;

    endTracking();
    const QPointer<OutlineView> stillThere = this;
    const QPointer<QDrag> session = new QDrag(this); // Qt deletes it after the drag
    session->setMimeData(pasteboard.release());
    const QRect rowRect = rectOfRow(row).toAlignedRect();
    session->setPixmap(viewport()->grab(rowRect));
    session->setHotSpot(position.toPoint() - rowRect.topLeft());
    source()->outlineViewDraggingSessionWillBeginAtPoint(this, session, position, items);
    if (!session)
        return true;
    const Qt::DropAction done = session->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    if (stillThere) {
        const QPointF end = viewport()->mapFromGlobal(QCursor::pos());
        source()->outlineViewDraggingSessionEndedAtPoint(this, session, end, done);
    }
    return true;
}

void OutlineView::registerForDraggedTypes(const QStringList &types)
{
    m_draggedTypes = types;
    viewport()->setAcceptDrops(!types.isEmpty());
}

void OutlineView::setDropItem(OutlineItem item, int childIndex)
{
    m_dropTarget = DropTarget{item, childIndex};
}

OutlineView::DropTarget OutlineView::targetAt(const QPointF &position) const
{
    const int row = rowAtPoint(position);
    const OutlineNode *node = nodeAtRow(row);
    if (!node)
        return {nullptr, int(m_model->root()->children.size())};
    const QRectF rect = rectOfRow(row);
    const qreal share = (position.y() - rect.top()) / rect.height();
    if (share < edgeShare)
        return {node->parent->item, node->position};
    if (share < 1 - edgeShare)
        return {node->item, -1};
    if (node->isExpanded && !node->children.empty())
        return {node->item, 0};
    return {node->parent->item, node->position + 1};
}

bool OutlineView::validateDrop(QDropEvent *event)
{
    const bool isKnown =
        std::any_of(m_draggedTypes.begin(), m_draggedTypes.end(),
                    [event](const QString &type) { return event->mimeData()->hasFormat(type); });
    Qt::DropAction action = Qt::IgnoreAction;
    if (isKnown) {
        m_dropTarget = targetAt(event->position());
        action = source()->outlineViewValidateDrop(this, event, m_dropTarget->item,
                                                   m_dropTarget->childIndex);
    }
    const bool isValid = action != Qt::IgnoreAction && (event->possibleActions() & action);
    if (isValid)
        event->setDropAction(action);
    else
        m_dropTarget.reset();
    event->setAccepted(isValid);
    viewport()->update();
    return isValid;
}

void OutlineView::dragEnterEvent(QDragEnterEvent *event)
{
    source()->outlineViewUpdateDraggingItemsForDrag(this, event);
    validateDrop(event);
}

void OutlineView::dragMoveEvent(QDragMoveEvent *event)
{
    validateDrop(event);
}

void OutlineView::dragLeaveEvent(QDragLeaveEvent *)
{
    m_dropTarget.reset();
    viewport()->update();
}

void OutlineView::dropEvent(QDropEvent *event)
{
    if (!validateDrop(event))
        return;
    const DropTarget target = *m_dropTarget;
    m_dropTarget.reset();
    event->setAccepted(
        source()->outlineViewAcceptDrop(this, event, target.item, target.childIndex));
}

void OutlineView::drawDropTarget(QPainter *painter)
{
    const OutlineNode *parent = m_model->nodeForItem(m_dropTarget->item);
    if (!parent)
        return;
    painter->setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter->setRenderHint(QPainter::Antialiasing);
    if (m_dropTarget->childIndex < 0) {
        if (parent->row >= 0)
            painter->drawRoundedRect(rectOfRow(parent->row).adjusted(6, 2, -6, -2), 5, 5);
        return;
    }
    const auto index = size_t(m_dropTarget->childIndex);
    qreal y = 1;
    if (index < parent->children.size()) {
        y = rectOfRow(parent->children[index]->row).top();
    } else if (!parent->children.empty()) {
        const OutlineNode *last = parent->children.back().get();
        while (last->isExpanded && !last->children.empty())
            last = last->children.back().get();
        y = rectOfRow(last->row).bottom();
    }
    const qreal x = 8 + (parent->level + 1) * m_indentationPerLevel;
    painter->drawLine(QPointF(x, y), QPointF(viewport()->width() - 8, y));
}

#include "platform/ui/HostColors.h"
#include "platform/ui/OutlineView.h"
#include "platform/ui/OutlineViewModel.h"

#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

namespace {

constexpr qreal triangleSize = 8;
constexpr qreal disclosureWidth = 14;
constexpr qreal selectionMargin = 6;
constexpr qreal selectionRadius = 6;
constexpr int textPixelSize = 13;

} // namespace

void OutlineView::setBackgroundColor(const QColor &color)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Base, color);
    colors.setColor(QPalette::Window, color);
    setPalette(colors);
}

QColor OutlineView::backgroundColor() const
{
    return palette().color(QPalette::Base);
}

QRectF OutlineView::rectOfRow(int row) const
{
    const OutlineNode *node = nodeAtRow(row);
    if (!node)
        return {};
    const QRect rect = visualRect(m_model->indexOfNode(node));
    return QRectF(0, rect.y(), viewport()->width(), rect.height());
}

int OutlineView::rowAtPoint(const QPointF &point) const
{
    if (!QRectF(viewport()->rect()).contains(point))
        return -1;
    const QModelIndex index = indexAt({0, int(point.y())});
    return index.isValid() ? m_model->nodeForIndex(index)->row : -1;
}

QRectF OutlineView::baseFrameOfCell(int row) const
{
    QRectF frame = rectOfRow(row);
    if (!frame.isEmpty())
        frame.setLeft(levelForRow(row) * m_indentationPerLevel + disclosureWidth);
    return frame;
}

QRectF OutlineView::baseFrameOfOutlineCell(int row) const
{
    if (!isExpandable(itemAtRow(row)) || row < 0)
        return {};
    QRectF frame = rectOfRow(row);
    frame.setLeft(levelForRow(row) * m_indentationPerLevel);
    frame.setWidth(disclosureWidth);
    return frame;
}

QRectF OutlineView::inViewDirection(QRectF frame) const
{
    if (isRightToLeft() && !frame.isNull())
        frame.moveLeft(viewport()->width() - frame.right());
    return frame;
}

QRectF OutlineView::frameOfCellAtColumn(int column, int row)
{
    return column == 0 ? inViewDirection(baseFrameOfCell(row)) : QRectF();
}

QRectF OutlineView::frameOfOutlineCellAtRow(int row)
{
    return inViewDirection(baseFrameOfOutlineCell(row));
}

void OutlineView::scrollRowToVisible(int row)
{
    if (const OutlineNode *node = nodeAtRow(row))
        scrollTo(m_model->indexOfNode(node));
}

/// Qt's own leaves the last line of pixels of a row outside, and has other hints that nobody needs.
void OutlineView::scrollTo(const QModelIndex &index, ScrollHint)
{
    executeDelayedItemsLayout();
    const QRect rect = visualRect(index);
    if (rect.isEmpty())
        return;
    const int below = rect.bottom() + 1 - viewport()->height();
    const int distance = rect.top() < 0 || below > rect.top() ? rect.top() : std::max(0, below);
    verticalScrollBar()->setValue(verticalScrollBar()->value() + distance);
}

OutlineViewCell OutlineView::dataCellForRow(int)
{
    OutlineViewCell cell;
    cell.font = font();
    cell.font.setPixelSize(textPixelSize);
    cell.textColor = Qt::black;
    cell.selectedTextColor = HostColors::lightText;
    return cell;
}

OutlineViewCell OutlineView::preparedCellAtRow(int row)
{
    const QPointer<QObject> item = itemAtRow(row);
    if (!item)
        return {};
    OutlineViewCell cell = judge()->outlineViewDataCellForTableColumn(this, 0, item);
    if (cell.kind == OutlineViewCell::Text && item)
        cell.text = source()->outlineViewObjectValueForTableColumn(this, 0, item).toString();
    if (item)
        judge()->outlineViewWillDisplayCell(this, cell, 0, item);
    return cell;
}

QString OutlineView::accessibleTextForItem(OutlineItem item)
{
    return source()->outlineViewObjectValueForTableColumn(this, 0, item).toString();
}

void OutlineView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    QPainter painter(viewport());
    if (m_dropTarget)
        drawDropTarget(&painter);
    if (hasFocus() && selectedRow() < 0) {
        // Nothing else would show that the keyboard is here.
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
    }
}

void OutlineView::drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    // Painting is const to Qt, but asks the delegate, which gets the view to talk to.
    const_cast<OutlineView *>(this)->drawRow(m_model->nodeForIndex(index)->row, painter,
                                             option.rect);
}

void OutlineView::drawRow(int row, QPainter *painter, const QRectF &clip)
{
    if (!itemAtRow(row))
        return;
    painter->save();
    painter->setClipRect(clip, Qt::IntersectClip);
    painter->setRenderHint(QPainter::Antialiasing);
    const bool isSelected = isRowSelected(row);
    if (isSelected)
        drawSelectionInRow(row, painter);
    const QRectF triangle = frameOfOutlineCellAtRow(row);
    if (!triangle.isEmpty())
        drawDisclosure(painter, triangle, isItemExpanded(itemAtRow(row)), isSelected);

    const OutlineViewCell cell = preparedCellAtRow(row);
    const QRectF frame = frameOfCellAtColumn(0, row);
    if (row != editedRow() && !frame.isEmpty()) {
        if (cell.kind == OutlineViewCell::Text) {
            painter->setLayoutDirection(layoutDirection());
            painter->setFont(cell.font);
            painter->setPen(isSelected ? cell.selectedTextColor : cell.textColor);
            painter->drawText(frame, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                              cell.elidedText(frame.width()));
        } else if (cell.kind == OutlineViewCell::Image) {
            QRectF image(QPointF(), cell.image.deviceIndependentSize());
            image.moveCenter(frame.center());
            if (isRightToLeft())
                image.moveRight(frame.right());
            else
                image.moveLeft(frame.left());
            painter->drawImage(image, cell.image);
        } else if (cell.draw) {
            cell.draw(painter, frame, isSelected);
        }
    }
    painter->restore();
}

void OutlineView::drawSelectionInRow(int row, QPainter *painter)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(hasFocus() || row == editedRow()
                          ? palette().color(QPalette::Active, QPalette::Highlight)
                          : HostColors::otherSelection);
    painter->drawRoundedRect(rectOfRow(row).adjusted(selectionMargin, 1, -selectionMargin, -1),
                             selectionRadius, selectionRadius);
}

void OutlineView::drawDisclosure(QPainter *painter, const QRectF &frame, bool isExpanded,
                                 bool isSelected)
{
    constexpr qreal half = triangleSize / 2;
    QPainterPath path;
    if (isExpanded) {
        path.moveTo(-half, -half / 2);
        path.lineTo(0, half / 2);
        path.lineTo(half, -half / 2);
    } else {
        path.moveTo(-half / 2, -half);
        path.lineTo(half / 2, 0);
        path.lineTo(-half / 2, half);
    }
    painter->setPen(QPen(isSelected ? HostColors::lightText : HostColors::disclosure, 1.6));
    painter->setBrush(Qt::NoBrush);
    const QTransform toItsPlace = QTransform::fromTranslate(frame.center().x(), frame.center().y());
    painter->drawPath((QTransform::fromScale(isRightToLeft() ? -1 : 1, 1) * toItsPlace).map(path));
}

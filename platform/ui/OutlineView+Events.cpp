#include "platform/ui/OutlineView.h"
#include "platform/ui/OutlineViewModel.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QScrollBar>
#include <QToolTip>

namespace {

constexpr QChar upArrow(0xF700);
constexpr QChar downArrow(0xF701);
constexpr QChar leftArrow(0xF702);
constexpr QChar rightArrow(0xF703);
constexpr QChar forwardDelete(0xF728);

} // namespace

QChar OutlineView::characterOfKey(const QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
        return upArrow;
    case Qt::Key_Down:
        return downArrow;
    case Qt::Key_Left:
        return leftArrow;
    case Qt::Key_Right:
        return rightArrow;
    case Qt::Key_Delete:
        return forwardDelete;
    default:
        return event->text().isEmpty() ? QChar() : event->text().front();
    }
}

void OutlineView::keyDown(QKeyEvent *event)
{
    if (moveByKey(event) || discloseByKey(event))
        event->accept();
    else
        QTreeView::keyPressEvent(event);
}

/// The nearest row that may be selected, from the given one on; -1 when there is none before stop.
int OutlineView::steppedRow(int from, int step, int stop) const
{
    for (int row = from; row != stop; row += step) {
        if (nodeAtRow(row) && mayBeSelected(row))
            return row;
    }
    return -1;
}

bool OutlineView::moveByKey(QKeyEvent *event)
{
    const int count = numberOfRows();
    if (event->matches(QKeySequence::SelectAll) && allowsMultipleSelection()) {
        RowIndexes all;
        for (int row = 0; row < count; ++row)
            all.insert(row);
        proposeSelection(all, -1);
        return true;
    }
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;

    // Also where nothing is selected any more: a row that led elsewhere is no barrier.
    const int lead = m_leadItem ? rowForItem(m_leadItem) : -1;
    const int page = std::max(1, int(viewport()->height() / std::max(m_rowHeight, 1.0)) - 1);
    int row = -1;
    switch (event->key()) {
    case Qt::Key_Up:
        row = steppedRow(lead < 0 ? count - 1 : lead - 1, -1, -1);
        break;
    case Qt::Key_Down:
        row = steppedRow(lead + 1, 1, count);
        break;
    case Qt::Key_Home:
        row = steppedRow(0, 1, count);
        break;
    case Qt::Key_End:
        row = steppedRow(count - 1, -1, -1);
        break;
    case Qt::Key_PageUp:
        row = steppedRow(std::max(0, lead - page), -1, -1);
        row = row < 0 ? steppedRow(0, 1, count) : row;
        break;
    case Qt::Key_PageDown:
        row = steppedRow(std::min(count - 1, lead + page), 1, count);
        row = row < 0 ? steppedRow(count - 1, -1, -1) : row;
        break;
    default:
        return false;
    }
    if (row < 0 && selectedRow() < 0) // no row to stay on
        row = event->key() == Qt::Key_Up ? steppedRow(count - 1, -1, -1) : steppedRow(0, 1, count);
    if (row < 0)
        return true;
    const bool extends = event->modifiers() & Qt::ShiftModifier;
    if (!extends)
        m_anchorItem = itemAtRow(row);
    proposeSelection(extends ? rowsUpTo(row) : RowIndexes{row}, row);
    return true;
}

bool OutlineView::discloseByKey(QKeyEvent *event)
{
    const int row = selectedRow();
    OutlineItem item = itemAtRow(row);
    if (!item || numberOfSelectedRows() != 1
        || (event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier))) {
        return false;
    }
    const OutlineNode *node = nodeAtRow(row);
    int key = event->key();
    if (isRightToLeft() && (key == Qt::Key_Left || key == Qt::Key_Right))
        key = key == Qt::Key_Left ? Qt::Key_Right : Qt::Key_Left;
    switch (key) {
    case Qt::Key_Plus:
        expandItem(item);
        return true;
    case Qt::Key_Minus:
        collapseItem(item);
        return true;
    case Qt::Key_Asterisk:
        expandItem(item, true);
        return true;
    case Qt::Key_Right:
        if (isExpandable(item) && !isItemExpanded(item))
            expandItem(item);
        else if (isItemExpanded(item) && !node->children.empty())
            proposeSelection({row + 1}, row + 1);
        return true;
    case Qt::Key_Left:
        if (isItemExpanded(item))
            collapseItem(item);
        else if (node->parent->row >= 0)
            proposeSelection({node->parent->row}, node->parent->row);
        return true;
    default:
        return false;
    }
}

/// Typing the beginning of a title selects it.
void OutlineView::keyboardSearch(const QString &search)
{
    const bool goesOn =
        m_searchTimer.isValid() && m_searchTimer.elapsed() <= QApplication::keyboardInputInterval();
    m_searchTimer.start();
    m_search = goesOn ? m_search + search : search;
    const int count = numberOfRows();
    const int start = std::max(0, selectedRow() + (m_search.size() == 1 ? 1 : 0));
    const QString lower = locale().toLower(m_search);
    for (int i = 0; i < count; ++i) {
        const int row = (start + i) % count;
        const QString text = preparedCellAtRow(row).text;
        // Titles may be in another language than the reader's, and "i" has two capitals in Turkish.
        const bool begins = text.startsWith(m_search, Qt::CaseInsensitive)
            || locale().toLower(text).startsWith(lower);
        if (begins && mayBeSelected(row)) {
            m_anchorItem = itemAtRow(row);
            proposeSelection({row}, row);
            return;
        }
    }
}

void OutlineView::mousePressEvent(QMouseEvent *event)
{
    endTracking();
    if (event->button() != Qt::LeftButton)
        return; // another button selects nothing; a menu comes with an event of its own
    const int row = rowAtPoint(event->position());
    OutlineItem item = itemAtRow(row);
    if (item && frameOfOutlineCellAtRow(row).contains(event->position())) {
        if (isItemExpanded(item))
            collapseItem(item);
        else
            expandItem(item);
        return;
    }
    const OutlineViewCell cell = preparedCellAtRow(row);
    if (item && cell.pressed && frameOfCellAtColumn(0, row).contains(event->position())
        && (isRowSelected(row) || judge()->outlineViewShouldTrackCell(this, cell, 0, item))) {
        cell.pressed(event->position());
        return;
    }

    // The ground below the rows stands for nothing that could be selected instead.
    if (row < 0)
        return;
    m_isTracking = true;
    m_hasTriedDrag = false;
    m_pressPosition = event->position();
    // The row under the mouse must not move away while it is being clicked.
    setAutoScroll(false);
    RowIndexes proposed{row};
    m_selectOnRelease = false;
    if (allowsMultipleSelection() && (event->modifiers() & Qt::ControlModifier)) {
        proposed = selectedRowIndexes();
        if (proposed.erase(row) == 0)
            proposed.insert(row);
        m_anchorItem = item;
    } else if (event->modifiers() & Qt::ShiftModifier) {
        proposed = rowsUpTo(row);
    } else {
        m_anchorItem = item;
        // Pressing one of several selected rows may begin to drag them all.
        m_selectOnRelease = isRowSelected(row) && numberOfSelectedRows() > 1;
    }
    if (!m_selectOnRelease)
        proposeSelection(proposed, row);
    setAutoScroll(true);
}

void OutlineView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton)) {
        endTracking(); // the release went elsewhere
        return;
    }
    const qreal distance = (event->position() - m_pressPosition).manhattanLength();
    if (!m_isTracking || distance < QApplication::startDragDistance())
        return;
    if (!m_hasTriedDrag) {
        m_hasTriedDrag = true;
        const QPointer<OutlineView> stillThere = this;
        const bool dragged = dragRows(m_pressPosition);
        if (!stillThere || dragged)
            return;
    }
    m_selectOnRelease = false;
    const qreal inside = std::clamp(event->position().y(), 0.0, viewport()->height() - 1.0);
    const int row = rowAtPoint({1, inside});
    if (row < 0)
        return;
    scrollRowToVisible(row);
    proposeSelection(rowsUpTo(row), row);
}

void OutlineView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int row = rowAtPoint(m_pressPosition);
    if (m_isTracking && m_selectOnRelease && row >= 0)
        proposeSelection({row}, row);
    endTracking();
}

void OutlineView::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
    const int row = rowAtPoint(event->position());
    if (event->button() != Qt::LeftButton || !m_isTracking || !isRowSelected(row))
        return;
    endTracking();
    if (editTriggers() & DoubleClicked)
        editRow(row);
}

void OutlineView::contextMenuEvent(QContextMenuEvent *event)
{
    endTracking();
    QPoint position = event->pos();
    if (event->reason() == QContextMenuEvent::Keyboard && selectedRow() >= 0)
        position = rectOfRow(selectedRow()).center().toPoint();
    const QPoint globalPosition = viewport()->mapToGlobal(position);
    QContextMenuEvent located(event->reason(), position, globalPosition, event->modifiers());
    QMenu *menu = menuForEvent(&located);
    event->setAccepted(menu);
    if (menu)
        menu->popup(globalPosition);
}

QMenu *OutlineView::menuForEvent(QContextMenuEvent *)
{
    return m_menu;
}

void OutlineView::hideEvent(QHideEvent *event)
{
    endTracking();
    QTreeView::hideEvent(event);
}

bool OutlineView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QTreeView::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    showToolTip(help->pos(), help->globalPos());
    return true;
}

/// The whole text of a row that shows only part of it.
void OutlineView::showToolTip(const QPoint &position, const QPoint &globalPosition)
{
    const int row = rowAtPoint(position);
    const OutlineViewCell cell = preparedCellAtRow(row);
    const QRectF frame = frameOfCellAtColumn(0, row);
    if (row >= 0 && cell.kind == OutlineViewCell::Text
        && cell.elidedText(frame.width()) != cell.text)
        QToolTip::showText(globalPosition, cell.text, viewport(), rectOfRow(row).toAlignedRect());
    else
        QToolTip::hideText();
}

/// Subviews stay with their rows, however far the rows are scrolled at once.
void OutlineView::scrollContentsBy(int dx, int dy)
{
    const QList<QWidget *> subviews =
        viewport()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    QList<QPoint> positions;
    for (const QWidget *subview : subviews)
        positions << subview->pos() + QPoint(dx, dy);
    QTreeView::scrollContentsBy(dx, dy);
    for (qsizetype i = 0; i < subviews.size(); ++i)
        subviews[i]->move(positions[i]);
}

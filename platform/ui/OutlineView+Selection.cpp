#include "platform/ui/OutlineView.h"
#include "platform/ui/OutlineViewModel.h"

#include <QItemSelection>
#include <QScopedValueRollback>

int OutlineView::selectedRow() const
{
    const RowIndexes rows = selectedRowIndexes();
    return rows.empty() ? -1 : *rows.begin();
}

RowIndexes OutlineView::selectedRowIndexes() const
{
    RowIndexes rows;
    const QModelIndexList indexes = selectionModel()->selectedIndexes();
    for (const QModelIndex &index : indexes)
        rows.insert(m_model->nodeForIndex(index)->row);
    rows.erase(-1);
    return rows;
}

QList<OutlineItem> OutlineView::selectedItems() const
{
    QList<OutlineItem> items;
    for (const int row : selectedRowIndexes())
        items << itemAtRow(row);
    items.removeAll(nullptr);
    return items;
}

void OutlineView::setAllowsMultipleSelection(bool allowed)
{
    setSelectionMode(allowed ? ExtendedSelection : SingleSelection);
}

void OutlineView::selectRowIndexes(const RowIndexes &indexes, bool extend)
{
    RowIndexes rows;
    for (const int row : indexes) {
        if (nodeAtRow(row) && (rows.empty() || allowsMultipleSelection()))
            rows.insert(row);
    }
    if (rows.empty() && (extend || !indexes.empty()))
        return;
    const int lead = rows.empty() ? -1 : *rows.rbegin();
    if (extend && allowsMultipleSelection())
        rows.merge(selectedRowIndexes());
    applySelection(rows, lead);
    m_anchorItem = m_leadItem;
    reportSelection();
}

void OutlineView::deselectAll()
{
    applySelection({});
    reportSelection();
}

/// @param lead the row that the keyboard goes on from; -1 to leave that where it is.
void OutlineView::applySelection(const RowIndexes &rows, int lead)
{
    QItemSelection selection;
    for (const int row : rows) {
        const QModelIndex index = m_model->indexOfNode(nodeAtRow(row));
        selection.select(index, index);
    }
    if (lead >= 0)
        m_leadItem = itemAtRow(lead);
    const QScopedValueRollback applying(m_isApplyingSelection, true);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    const int current = rows.empty() ? -1 : rows.contains(lead) ? lead : *rows.begin();
    if (current >= 0) {
        const QModelIndex index = m_model->indexOfNode(nodeAtRow(current));
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    viewport()->update();
}

void OutlineView::reportSelection()
{
    const QList<OutlineItem> selected = selectedItems();
    const QSet<QObject *> items(selected.begin(), selected.end());
    if (items == m_reportedItems)
        return;
    m_reportedItems = items;
    notify(&OutlineViewDelegate::outlineViewSelectionDidChange);
}

bool OutlineView::mayBeSelected(int row) const
{
    auto *view = const_cast<OutlineView *>(this);
    OutlineItem item = itemAtRow(row);
    return item && judge()->outlineViewShouldSelectItem(view, item);
}

/// What the user asks for. The delegate may change it; rows it refuses are left out, and when that
/// leaves nothing of it, the selection stays as it was.
void OutlineView::proposeSelection(const RowIndexes &proposed, int lead)
{
    const RowIndexes before = selectedRowIndexes();
    const RowIndexes wanted =
        judge()->outlineViewSelectionIndexesForProposedSelection(this, proposed);
    RowIndexes accepted;
    for (const int row : wanted) {
        if (nodeAtRow(row) && (before.contains(row) || mayBeSelected(row)))
            accepted.insert(row);
    }
    if (accepted.empty() && (!wanted.empty() || !m_allowsEmptySelection))
        return;
    if (accepted.size() > 1 && !allowsMultipleSelection())
        accepted = {accepted.contains(lead) ? lead : *accepted.begin()};
    if (accepted == selectedRowIndexes()) {
        if (accepted.contains(lead))
            applySelection(accepted, lead);
        return;
    }
    applySelection(accepted, lead);
    if (m_isTracking)
        notify(&OutlineViewDelegate::outlineViewSelectionIsChanging);
    else
        reportSelection();
}

void OutlineView::endTracking()
{
    if (!m_isTracking)
        return;
    m_isTracking = false;
    reportSelection();
}

/// The rows from the anchor to the given one, where several may be selected; else that one.
RowIndexes OutlineView::rowsUpTo(int row) const
{
    const int anchor = rowForItem(m_anchorItem);
    if (!allowsMultipleSelection() || anchor < 0)
        return {row};
    RowIndexes rows;
    for (int each = std::min(anchor, row); each <= std::max(anchor, row); ++each)
        rows.insert(each);
    return rows;
}

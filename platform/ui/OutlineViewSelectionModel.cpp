#include "platform/ui/OutlineViewSelectionModel.h"

#include "platform/ui/OutlineView.h"
#include "platform/ui/OutlineViewModel.h"

OutlineSelectionModel::OutlineSelectionModel(QAbstractItemModel *model, OutlineView *view)
    : QItemSelectionModel(model, view)
    , m_view(view)
{ }

void OutlineSelectionModel::select(const QItemSelection &selection, SelectionFlags command)
{
    if (m_view->m_isApplyingSelection) {
        QItemSelectionModel::select(selection, command);
        return;
    }
    QItemSelection wanted;
    if (!(command & Clear))
        wanted = this->selection();
    wanted.merge(selection, command & (Select | Deselect | Toggle));
    RowIndexes proposed;
    int lead = -1;
    const QModelIndexList indexes = wanted.indexes();
    for (const QModelIndex &index : indexes) {
        const int row = m_view->m_model->nodeForIndex(index)->row;
        if (row >= 0)
            proposed.insert(lead = row);
    }
    if (proposed != m_view->selectedRowIndexes())
        m_view->proposeSelection(proposed, lead);
}

void OutlineSelectionModel::clear()
{
    if (m_view->m_isApplyingSelection)
        QItemSelectionModel::clear();
    else
        select(QItemSelection(), Clear);
}

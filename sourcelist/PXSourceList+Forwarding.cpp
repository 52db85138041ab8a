#include "sourcelist/PXSourceList.h"

using namespace Qt::StringLiterals;

OutlineViewCell PXSourceListDelegate::sourceListDataCellForItem(PXSourceList *list,
                                                                OutlineItem item)
{
    return list->dataCellForRow(list->rowForItem(item));
}

qreal PXSourceListDelegate::sourceListHeightOfRowByItem(PXSourceList *list, OutlineItem)
{
    return list->rowHeight();
}

// To the secondary data source. Without one, the outline view's own defaults are the answers.

int PXSourceList::outlineViewNumberOfChildrenOfItem(OutlineView *view, OutlineItem item)
{
    return source() ? source()->sourceListNumberOfChildrenOfItem(this, item)
                    : OutlineViewDataSource::outlineViewNumberOfChildrenOfItem(view, item);
}

OutlineItem PXSourceList::outlineViewChild(OutlineView *view, int index, OutlineItem item)
{
    return source() ? source()->sourceListChild(this, index, item)
                    : OutlineViewDataSource::outlineViewChild(view, index, item);
}

bool PXSourceList::outlineViewIsItemExpandable(OutlineView *view, OutlineItem item)
{
    return source() ? source()->sourceListIsItemExpandable(this, item)
                    : OutlineViewDataSource::outlineViewIsItemExpandable(view, item);
}

QVariant PXSourceList::outlineViewObjectValueForTableColumn(OutlineView *view, int column,
                                                            OutlineItem item)
{
    return source()
        ? source()->sourceListObjectValueForItem(this, item)
        : OutlineViewDataSource::outlineViewObjectValueForTableColumn(view, column, item);
}

void PXSourceList::outlineViewSetObjectValue(OutlineView *, const QVariant &value, int,
                                             OutlineItem item)
{
    if (source())
        source()->sourceListSetObjectValue(this, value, item);
}

OutlineItem PXSourceList::outlineViewItemForPersistentObject(OutlineView *view,
                                                             const QVariant &object)
{
    return source() ? source()->sourceListItemForPersistentObject(this, object)
                    : OutlineViewDataSource::outlineViewItemForPersistentObject(view, object);
}

QVariant PXSourceList::outlineViewPersistentObjectForItem(OutlineView *view, OutlineItem item)
{
    return source() ? source()->sourceListPersistentObjectForItem(this, item)
                    : OutlineViewDataSource::outlineViewPersistentObjectForItem(view, item);
}

bool PXSourceList::outlineViewWriteItems(OutlineView *view, const QList<OutlineItem> &items,
                                         QMimeData *pasteboard)
{
    return source() ? source()->sourceListWriteItems(this, items, pasteboard)
                    : OutlineViewDataSource::outlineViewWriteItems(view, items, pasteboard);
}

Qt::DropAction PXSourceList::outlineViewValidateDrop(OutlineView *view, const QDropEvent *info,
                                                     OutlineItem item, int childIndex)
{
    return source() ? source()->sourceListValidateDrop(this, info, item, childIndex)
                    : OutlineViewDataSource::outlineViewValidateDrop(view, info, item, childIndex);
}

bool PXSourceList::outlineViewAcceptDrop(OutlineView *view, const QDropEvent *info,
                                         OutlineItem item, int childIndex)
{
    return source() ? source()->sourceListAcceptDrop(this, info, item, childIndex)
                    : OutlineViewDataSource::outlineViewAcceptDrop(view, info, item, childIndex);
}

QStringList PXSourceList::outlineViewNamesOfPromisedFilesDroppedAtDestination(
    OutlineView *view, const QUrl &destination, const QList<OutlineItem> &items)
{
    return source()
        ? source()->sourceListNamesOfPromisedFilesDroppedAtDestination(this, destination, items)
        : OutlineViewDataSource::outlineViewNamesOfPromisedFilesDroppedAtDestination(
            view, destination, items);
}

std::unique_ptr<QMimeData> PXSourceList::outlineViewPasteboardWriterForItem(OutlineView *view,
                                                                            OutlineItem item)
{
    return source() ? source()->sourceListPasteboardWriterForItem(this, item)
                    : OutlineViewDataSource::outlineViewPasteboardWriterForItem(view, item);
}

void PXSourceList::outlineViewDraggingSessionWillBeginAtPoint(OutlineView *, QDrag *session,
                                                              QPointF point,
                                                              const QList<OutlineItem> &items)
{
    if (source())
        source()->sourceListDraggingSessionWillBeginAtPoint(this, session, point, items);
}

void PXSourceList::outlineViewDraggingSessionEndedAtPoint(OutlineView *, QDrag *session,
                                                          QPointF point, Qt::DropAction operation)
{
    if (source())
        source()->sourceListDraggingSessionEndedAtPoint(this, session, point, operation);
}

void PXSourceList::outlineViewUpdateDraggingItemsForDrag(OutlineView *, const QDropEvent *info)
{
    if (source())
        source()->sourceListUpdateDraggingItemsForDrag(this, info);
}

// To the secondary delegate.

bool PXSourceList::outlineViewShouldExpandItem(OutlineView *, OutlineItem item)
{
    return !judge() || judge()->sourceListShouldExpandItem(this, item);
}

bool PXSourceList::outlineViewShouldCollapseItem(OutlineView *, OutlineItem item)
{
    return !isGroupAlwaysExpanded(item)
        && (!judge() || judge()->sourceListShouldCollapseItem(this, item));
}

OutlineViewCell PXSourceList::outlineViewDataCellForTableColumn(OutlineView *, int,
                                                                OutlineItem item)
{
    return judge() ? judge()->sourceListDataCellForItem(this, item)
                   : dataCellForRow(rowForItem(item));
}

void PXSourceList::outlineViewWillDisplayCell(OutlineView *, OutlineViewCell &cell, int,
                                              OutlineItem item)
{
    // Not by the font, which knows no languages: the capital of "i" has a dot in Turkish.
    if (isGroupItem(item))
        cell.text = locale().toUpper(cell.text);
    if (judge())
        judge()->sourceListWillDisplayCell(this, cell, item);
}

bool PXSourceList::outlineViewShouldSelectItem(OutlineView *, OutlineItem item)
{
    return !isGroupItem(item) && (!judge() || judge()->sourceListShouldSelectItem(this, item));
}

RowIndexes PXSourceList::outlineViewSelectionIndexesForProposedSelection(OutlineView *,
                                                                         const RowIndexes &proposed)
{
    if (selectedRow() < 0 && !proposed.empty() && isGroupItem(itemAtRow(*proposed.begin())))
        return {};
    return judge() ? judge()->sourceListSelectionIndexesForProposedSelection(this, proposed)
                   : proposed;
}

bool PXSourceList::outlineViewShouldEditTableColumn(OutlineView *, int, OutlineItem item)
{
    return !isGroupItem(item) && (!judge() || judge()->sourceListShouldEditItem(this, item));
}

bool PXSourceList::outlineViewShouldTrackCell(OutlineView *, const OutlineViewCell &cell, int,
                                              OutlineItem item)
{
    return judge() && judge()->sourceListShouldTrackCell(this, cell, item);
}

qreal PXSourceList::outlineViewHeightOfRowByItem(OutlineView *, OutlineItem item)
{
    return judge() ? judge()->sourceListHeightOfRowByItem(this, item) : rowHeight();
}

bool PXSourceList::outlineViewIsGroupItem(OutlineView *, OutlineItem item)
{
    return isGroupItem(item);
}

// What the outline view tells becomes a notification of the list's own.

void PXSourceList::outlineViewSelectionIsChanging(const Notification &)
{
    post(u"PXSourceListSelectionIsChanging"_s);
}

void PXSourceList::outlineViewSelectionDidChange(const Notification &)
{
    post(u"PXSourceListSelectionDidChange"_s);
}

void PXSourceList::outlineViewItemWillExpand(const Notification &notification)
{
    post(u"PXSourceListItemWillExpand"_s, notification.userInfo);
}

void PXSourceList::outlineViewItemDidExpand(const Notification &notification)
{
    post(u"PXSourceListItemDidExpand"_s, notification.userInfo);
}

void PXSourceList::outlineViewItemWillCollapse(const Notification &notification)
{
    post(u"PXSourceListItemWillCollapse"_s, notification.userInfo);
}

void PXSourceList::outlineViewItemDidCollapse(const Notification &notification)
{
    post(u"PXSourceListItemDidCollapse"_s, notification.userInfo);
}

#pragma once

#include "platform/ui/OutlineViewProtocols.h"

#include <limits>

class PXSourceList;

/// Supplies the tree, the badges and the icons of a source list. Main thread.
///
/// To be implemented by a QObject and named in its Q_INTERFACES. Methods with a body are optional:
/// the body is the answer that counts when the method is not implemented. A null item is the root.
class PXSourceListDataSource
{
public:
    /// The badge value that stands for no badge.
    static constexpr qint64 noBadge = std::numeric_limits<qint64>::max();

    virtual ~PXSourceListDataSource() = default;

    virtual int sourceListNumberOfChildrenOfItem(PXSourceList *list, OutlineItem item) = 0;
    virtual OutlineItem sourceListChild(PXSourceList *list, int index, OutlineItem item) = 0;
    virtual QVariant sourceListObjectValueForItem(PXSourceList *list, OutlineItem item) = 0;
    virtual bool sourceListIsItemExpandable(PXSourceList *list, OutlineItem item) = 0;
    /// A title that the user has edited.
    virtual void sourceListSetObjectValue(PXSourceList *, const QVariant &, OutlineItem) { }

    virtual bool sourceListItemHasBadge(PXSourceList *, OutlineItem) { return false; }
    virtual qint64 sourceListBadgeValueForItem(PXSourceList *, OutlineItem) { return noBadge; }
    /// Colours of the badge while its row is not selected; an invalid one for the usual colour.
    virtual QColor sourceListBadgeBackgroundColorForItem(PXSourceList *, OutlineItem) { return {}; }
    virtual QColor sourceListBadgeTextColorForItem(PXSourceList *, OutlineItem) { return {}; }

    virtual bool sourceListItemHasIcon(PXSourceList *, OutlineItem) { return false; }
    /// A null image for none.
    virtual QImage sourceListIconForItem(PXSourceList *, OutlineItem) { return {}; }
    /// The icon while the row is selected; a null image for the usual one.
    virtual QImage sourceListIconForItemSelected(PXSourceList *, OutlineItem) { return {}; }

    virtual OutlineItem sourceListItemForPersistentObject(PXSourceList *, const QVariant &)
    {
        return nullptr;
    }
    virtual QVariant sourceListPersistentObjectForItem(PXSourceList *, OutlineItem) { return {}; }

    /// Fills the pasteboard and answers YES, or NO when these items cannot be dragged.
    virtual bool sourceListWriteItems(PXSourceList *, const QList<OutlineItem> &, QMimeData *)
    {
        return false;
    }
    /// What a drop there would do. Child index -1 means onto the item itself.
    virtual Qt::DropAction sourceListValidateDrop(PXSourceList *, const QDropEvent *, OutlineItem,
                                                  int)
    {
        return Qt::IgnoreAction;
    }
    virtual bool sourceListAcceptDrop(PXSourceList *, const QDropEvent *, OutlineItem, int)
    {
        return false;
    }
    virtual QStringList
    sourceListNamesOfPromisedFilesDroppedAtDestination(PXSourceList *, const QUrl &,
                                                       const QList<OutlineItem> &)
    {
        return {};
    }
    virtual std::unique_ptr<QMimeData> sourceListPasteboardWriterForItem(PXSourceList *,
                                                                         OutlineItem)
    {
        return nullptr;
    }
    virtual void sourceListDraggingSessionWillBeginAtPoint(PXSourceList *, QDrag *, QPointF,
                                                           const QList<OutlineItem> &)
    { }
    virtual void sourceListDraggingSessionEndedAtPoint(PXSourceList *, QDrag *, QPointF,
                                                       Qt::DropAction)
    { }
    virtual void sourceListUpdateDraggingItemsForDrag(PXSourceList *, const QDropEvent *) { }
};

#define PXSourceListDataSource_iid "com.solvane.PXSourceListDataSource/6"
Q_DECLARE_INTERFACE(PXSourceListDataSource, PXSourceListDataSource_iid)

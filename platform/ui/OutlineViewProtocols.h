#pragma once

#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/OutlineViewCell.h"

#include <QList>
#include <QMimeData>
#include <QPointF>
#include <QStringList>
#include <QtPlugin>
#include <QVariant>

#include <memory>
#include <set>

class OutlineView;
class QDrag;
class QDropEvent;
class QUrl;

/// An item of the tree; null stands for the root. Items belong to the data source's side.
using OutlineItem = QObject *;

/// Numbers of visible rows, from 0 at the top.
using RowIndexes = std::set<int>;

Q_DECLARE_METATYPE(RowIndexes)

/// Supplies the tree of an outline view, which asks anew at every reload. Main thread. All methods
/// are optional: the bodies here are the answers that count when one is not implemented. The table
/// column is always 0.
class OutlineViewDataSource
{
public:
    virtual ~OutlineViewDataSource() = default;

    virtual int outlineViewNumberOfChildrenOfItem(OutlineView *, OutlineItem) { return 0; }
    /// Null children and items that already have a row are left out.
    virtual OutlineItem outlineViewChild(OutlineView *, int, OutlineItem) { return nullptr; }
    virtual bool outlineViewIsItemExpandable(OutlineView *, OutlineItem) { return false; }
    virtual QVariant outlineViewObjectValueForTableColumn(OutlineView *, int, OutlineItem)
    {
        return {};
    }
    virtual void outlineViewSetObjectValue(OutlineView *, const QVariant &, int, OutlineItem) { }

    virtual OutlineItem outlineViewItemForPersistentObject(OutlineView *, const QVariant &)
    {
        return nullptr;
    }
    virtual QVariant outlineViewPersistentObjectForItem(OutlineView *, OutlineItem) { return {}; }

    /// Fills the pasteboard and answers YES, or NO when these items cannot be dragged.
    virtual bool outlineViewWriteItems(OutlineView *, const QList<OutlineItem> &, QMimeData *)
    {
        return false;
    }
    /// What a drop there would do. Child index -1 means onto the item itself.
    virtual Qt::DropAction outlineViewValidateDrop(OutlineView *, const QDropEvent *, OutlineItem,
                                                   int)
    {
        return Qt::IgnoreAction;
    }
    virtual bool outlineViewAcceptDrop(OutlineView *, const QDropEvent *, OutlineItem, int)
    {
        return false;
    }
    virtual QStringList
    outlineViewNamesOfPromisedFilesDroppedAtDestination(OutlineView *, const QUrl &,
                                                        const QList<OutlineItem> &)
    {
        return {};
    }
    /// Pasteboard contents of a single item; null to have outlineViewWriteItems asked instead.
    virtual std::unique_ptr<QMimeData> outlineViewPasteboardWriterForItem(OutlineView *,
                                                                          OutlineItem)
    {
        return nullptr;
    }
    virtual void outlineViewDraggingSessionWillBeginAtPoint(OutlineView *, QDrag *, QPointF,
                                                            const QList<OutlineItem> &)
    { }
    virtual void outlineViewDraggingSessionEndedAtPoint(OutlineView *, QDrag *, QPointF,
                                                        Qt::DropAction)
    { }
    virtual void outlineViewUpdateDraggingItemsForDrag(OutlineView *, const QDropEvent *) { }
};

#define OutlineViewDataSource_iid "com.solvane.OutlineViewDataSource/6"
Q_DECLARE_INTERFACE(OutlineViewDataSource, OutlineViewDataSource_iid)

/// Decides what an outline view's user may do and how rows look, and hears what has happened. Main
/// thread. All methods are optional, as in the data source. Items in notifications stand under the
/// user-info key "item" (QObject *).
class OutlineViewDelegate
{
public:
    virtual ~OutlineViewDelegate() = default;

    virtual bool outlineViewShouldExpandItem(OutlineView *, OutlineItem) { return true; }
    virtual bool outlineViewShouldCollapseItem(OutlineView *, OutlineItem) { return true; }
    virtual bool outlineViewShouldSelectItem(OutlineView *, OutlineItem) { return true; }
    /// Turns the selection that a click or key would give into the one wanted.
    virtual RowIndexes outlineViewSelectionIndexesForProposedSelection(OutlineView *,
                                                                       const RowIndexes &proposed)
    {
        return proposed;
    }
    virtual bool outlineViewShouldEditTableColumn(OutlineView *, int, OutlineItem) { return true; }
    /// Whether the cell reacts to a press on an unselectable row, without selecting it.
    virtual bool outlineViewShouldTrackCell(OutlineView *, const OutlineViewCell &, int,
                                            OutlineItem)
    {
        return false;
    }
    virtual bool outlineViewIsGroupItem(OutlineView *, OutlineItem) { return false; }

    /// The base answers are the view's own cell and height for the row.
    virtual OutlineViewCell outlineViewDataCellForTableColumn(OutlineView *, int, OutlineItem);
    virtual qreal outlineViewHeightOfRowByItem(OutlineView *, OutlineItem);
    /// A last change to the cell, which has its text already.
    virtual void outlineViewWillDisplayCell(OutlineView *, OutlineViewCell &, int, OutlineItem) { }

    /// While the mouse is held down and the selection under it changes.
    virtual void outlineViewSelectionIsChanging(const Notification &) { }
    /// Once for every change of the selected items, whoever made it.
    virtual void outlineViewSelectionDidChange(const Notification &) { }
    virtual void outlineViewItemWillExpand(const Notification &) { }
    virtual void outlineViewItemDidExpand(const Notification &) { }
    virtual void outlineViewItemWillCollapse(const Notification &) { }
    virtual void outlineViewItemDidCollapse(const Notification &) { }
};

#define OutlineViewDelegate_iid "com.solvane.OutlineViewDelegate/6"
Q_DECLARE_INTERFACE(OutlineViewDelegate, OutlineViewDelegate_iid)

#pragma once

#include "platform/ui/OutlineViewProtocols.h"

class PXSourceList;
class QContextMenuEvent;
class QMenu;

/// Decides what the user of a source list may do and how its rows look. Main thread.
///
/// To be implemented by a QObject and named in its Q_INTERFACES. All methods are optional: the
/// bodies are the answers that count when one is not implemented. Headings are never asked about
/// where the list itself decides: they cannot be selected or edited.
///
/// The list's notifications reach the delegate through those of these slots (or Q_INVOKABLE
/// methods) that it has, each taking a `Notification`:
///
///   sourceListSelectionIsChanging       while the mouse is held down and the selection changes
///   sourceListSelectionDidChange
///   sourceListItemWillExpand, ...DidExpand, ...WillCollapse, ...DidCollapse
///                                       user info "item": the item (QObject *)
///   sourceListDeleteKeyPressedOnRows    user info "rows": the selected rows (RowIndexes)
class PXSourceListDelegate
{
public:
    virtual ~PXSourceListDelegate() = default;

    /// Whether the heading stands open, without a triangle and without a way to close it.
    virtual bool sourceListIsGroupAlwaysExpanded(PXSourceList *, OutlineItem) { return false; }
    virtual bool sourceListShouldExpandItem(PXSourceList *, OutlineItem) { return true; }
    virtual bool sourceListShouldCollapseItem(PXSourceList *, OutlineItem) { return true; }

    virtual bool sourceListShouldSelectItem(PXSourceList *, OutlineItem) { return true; }
    /// Turns the selection that a click or key would give into the one wanted.
    virtual RowIndexes sourceListSelectionIndexesForProposedSelection(PXSourceList *,
                                                                      const RowIndexes &proposed)
    {
        return proposed;
    }
    virtual bool sourceListShouldEditItem(PXSourceList *, OutlineItem) { return true; }
    virtual bool sourceListShouldTrackCell(PXSourceList *, const OutlineViewCell &, OutlineItem)
    {
        return false;
    }

    /// The menu for a right click or the menu key, not taken over; null for the list's own. The
    /// item is null where there is no row.
    virtual QMenu *sourceListMenuForEvent(PXSourceList *, QContextMenuEvent *, OutlineItem)
    {
        return nullptr;
    }

    /// The base answers are the list's own cell and height for the row.
    virtual OutlineViewCell sourceListDataCellForItem(PXSourceList *list, OutlineItem item);
    virtual qreal sourceListHeightOfRowByItem(PXSourceList *list, OutlineItem item);
    /// A last change to the cell, which has its text already.
    virtual void sourceListWillDisplayCell(PXSourceList *, OutlineViewCell &, OutlineItem) { }
};

#define PXSourceListDelegate_iid "com.solvane.PXSourceListDelegate/6"
Q_DECLARE_INTERFACE(PXSourceListDelegate, PXSourceListDelegate_iid)

#pragma once

#include "platform/ui/OutlineView.h"
#include "sourcelist/PXSourceListDataSource.h"
#include "sourcelist/PXSourceListDelegate.h"

#include <QHash>
#include <QPixmap>

/// A sidebar: headings at the top level, selectable entries with icons and badges below them.
///
/// The list is its own outline delegate and data source. It keeps headings out of the selection and
/// passes all other questions on to a secondary delegate and data source. Neither is owned; one
/// that is deleted counts as absent. What happens is posted on the default notification centre,
/// with the list as object, and the delegate hears it through its slots (see PXSourceListDelegate).
/// Main thread.
class PXSourceList : public OutlineView, public OutlineViewDataSource, public OutlineViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(OutlineViewDataSource OutlineViewDelegate)

public:
    explicit PXSourceList(QWidget *parent = nullptr);
    ~PXSourceList() override;

    /// The secondary objects. A new delegate is subscribed to the notifications that it has slots
    /// for, the old one unsubscribed. A new data source is read at once.
    void setDelegate(QObject *delegate) override;
    void setDataSource(QObject *dataSource) override;
    QObject *delegate() const override { return _secondaryDelegate; }
    QObject *dataSource() const override { return _secondaryDataSource; }
    /// Subscribes the delegate to the notification of that name, if it answers the selector.
    void registerDelegateToReceiveNotification(const QString &name, const Selector &selector);

    /// In which icons are drawn; 16 × 16 at first. Cut down to the row height.
    void setIconSize(const QSizeF &size);
    QSizeF iconSize() const { return _iconSize; }

    int numberOfGroups();
    bool isGroupItem(OutlineItem item) const { return levelForItem(item) == 0; }
    bool isGroupAlwaysExpanded(OutlineItem item);
    bool itemHasBadge(OutlineItem item);
    /// PXSourceListDataSource::noBadge for an item without one.
    qint64 badgeValueForItem(OutlineItem item);

    /// Empty for a row without a badge.
    QSizeF sizeOfBadgeAtRow(int row);
    void drawBadgeForRow(int row, const QRectF &rect, QPainter *painter);
    /// The width that leaves the title of every row that has a badge its place, or a long title its
    /// beginning and end; 0 without badges. A number of 64 bits is as wide as a narrow list.
    int widthForBadges();

    /// Reads the tree anew, opens the groups that are always open and moves a selection that has
    /// come to rest on a heading to the entry above it.
    void reloadData() override;
    /// Headings are left out. A request that leaves nothing, an empty one too, changes nothing.
    void selectRowIndexes(const RowIndexes &indexes, bool extend) override;
    void keyDown(QKeyEvent *event) override;
    QMenu *menuForEvent(QContextMenuEvent *event) override;
    QRectF frameOfCellAtColumn(int column, int row) override;
    QRectF frameOfOutlineCellAtRow(int row) override;
    OutlineViewCell dataCellForRow(int row) override;
    void drawRow(int row, QPainter *painter, const QRectF &clip) override;
    /// The title, followed by the number of its badge: "Cleaners, 12".
    QString accessibleTextForItem(OutlineItem item) override;

    int outlineViewNumberOfChildrenOfItem(OutlineView *view, OutlineItem item) override;
    OutlineItem outlineViewChild(OutlineView *view, int index, OutlineItem item) override;
    bool outlineViewIsItemExpandable(OutlineView *view, OutlineItem item) override;
    QVariant outlineViewObjectValueForTableColumn(OutlineView *view, int column,
                                                  OutlineItem item) override;
    void outlineViewSetObjectValue(OutlineView *view, const QVariant &value, int column,
                                   OutlineItem item) override;
    OutlineItem outlineViewItemForPersistentObject(OutlineView *view,
                                                   const QVariant &object) override;
    QVariant outlineViewPersistentObjectForItem(OutlineView *view, OutlineItem item) override;
    bool outlineViewWriteItems(OutlineView *view, const QList<OutlineItem> &items,
                               QMimeData *pasteboard) override;
    Qt::DropAction outlineViewValidateDrop(OutlineView *view, const QDropEvent *info,
                                           OutlineItem item, int childIndex) override;
    bool outlineViewAcceptDrop(OutlineView *view, const QDropEvent *info, OutlineItem item,
                               int childIndex) override;
    QStringList
    outlineViewNamesOfPromisedFilesDroppedAtDestination(OutlineView *view, const QUrl &destination,
                                                        const QList<OutlineItem> &items) override;
    std::unique_ptr<QMimeData> outlineViewPasteboardWriterForItem(OutlineView *view,
                                                                  OutlineItem item) override;
    void outlineViewDraggingSessionWillBeginAtPoint(OutlineView *view, QDrag *session,
                                                    QPointF point,
                                                    const QList<OutlineItem> &items) override;
    void outlineViewDraggingSessionEndedAtPoint(OutlineView *view, QDrag *session, QPointF point,
                                                Qt::DropAction operation) override;
    void outlineViewUpdateDraggingItemsForDrag(OutlineView *view, const QDropEvent *info) override;

    bool outlineViewShouldExpandItem(OutlineView *view, OutlineItem item) override;
    bool outlineViewShouldCollapseItem(OutlineView *view, OutlineItem item) override;
    OutlineViewCell outlineViewDataCellForTableColumn(OutlineView *view, int column,
                                                      OutlineItem item) override;
    void outlineViewWillDisplayCell(OutlineView *view, OutlineViewCell &cell, int column,
                                    OutlineItem item) override;
    bool outlineViewShouldSelectItem(OutlineView *view, OutlineItem item) override;
    RowIndexes outlineViewSelectionIndexesForProposedSelection(OutlineView *view,
                                                               const RowIndexes &proposed) override;
    bool outlineViewShouldEditTableColumn(OutlineView *view, int column, OutlineItem item) override;
    bool outlineViewShouldTrackCell(OutlineView *view, const OutlineViewCell &cell, int column,
                                    OutlineItem item) override;
    qreal outlineViewHeightOfRowByItem(OutlineView *view, OutlineItem item) override;
    bool outlineViewIsGroupItem(OutlineView *view, OutlineItem item) override;

    void outlineViewSelectionIsChanging(const Notification &notification) override;
    void outlineViewSelectionDidChange(const Notification &notification) override;
    void outlineViewItemWillExpand(const Notification &notification) override;
    void outlineViewItemDidExpand(const Notification &notification) override;
    void outlineViewItemWillCollapse(const Notification &notification) override;
    void outlineViewItemDidCollapse(const Notification &notification) override;

private:
    struct ScaledIcon
    {
        qint64 imageKey = 0;
        QPixmap pixmap;
    };

    void PXSL_setup();
    void fixSelection();
    /// Null for an absent object and for one that does not conform.
    PXSourceListDataSource *source() const;
    PXSourceListDelegate *judge() const;
    void post(const QString &name, const Dictionary &userInfo = {});
    QRectF leftToRightTextFrame(int row);
    void drawIcon(int row, QPainter *painter);
    /// The row's icon in exactly the device pixels that it covers.
    QPixmap scaledIcon(int row, const QImage &image, const QSize &pixels);
    bool isWindowVisible() const;
    bool isFirstResponder() const;

    QPointer<QObject> _secondaryDelegate;
    QPointer<QObject> _secondaryDataSource;
    QSizeF _iconSize;
    QHash<int, ScaledIcon> _scaledIcons; ///< By row.
};

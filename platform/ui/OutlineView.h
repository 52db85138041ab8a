#pragma once

#include "platform/ui/OutlineViewProtocols.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTreeView>

#include <optional>

class OutlineModel;
class QMenu;
struct OutlineNode;

/// A list of rows that form a tree: one column, no header, no horizontal scrolling.
///
/// The data source is read when reloadData() runs, the children of an item when it is first
/// expanded; texts and looks are asked for at every drawing. Neither data source nor delegate nor
/// items are owned, and each may be deleted at any time: a deleted item's row stays empty until the
/// next reload. All coordinates are the viewport's, in device-independent pixels. Main thread.
class OutlineView : public QTreeView
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget *parent = nullptr);
    ~OutlineView() override;

    /// Objects that implement OutlineViewDataSource and OutlineViewDelegate; null or any other
    /// object stands for one that implements no method.
    virtual void setDataSource(QObject *dataSource);
    virtual void setDelegate(QObject *delegate);
    virtual QObject *dataSource() const { return m_dataSource; }
    virtual QObject *delegate() const { return m_delegate; }

    /// Reads the tree anew. Items that are still there stay expanded and selected.
    virtual void reloadData();

    int numberOfRows() const;
    /// Null for a row that does not exist.
    OutlineItem itemAtRow(int row) const;
    /// -1 for an item that has no row.
    int rowForItem(OutlineItem item) const;
    /// 0 for the items at the top; -1 for the root and for unknown items.
    int levelForItem(OutlineItem item) const;
    int levelForRow(int row) const { return levelForItem(itemAtRow(row)); }

    bool isExpandable(OutlineItem item) const;
    bool isItemExpanded(OutlineItem item) const;
    /// Unless the delegate refuses. The null item stands for all items at the top.
    void expandItem(OutlineItem item, bool expandChildren = false);
    void collapseItem(OutlineItem item);

    /// The first selected row; -1 for none.
    int selectedRow() const;
    RowIndexes selectedRowIndexes() const;
    int numberOfSelectedRows() const { return int(selectedRowIndexes().size()); }
    bool isRowSelected(int row) const { return selectedRowIndexes().contains(row); }
    /// Selects without asking the delegate. Indexes outside the rows are ignored; a set that has no
    /// others leaves the selection as it is, while an empty one clears it unless it extends.
    virtual void selectRowIndexes(const RowIndexes &indexes, bool extend);
    void deselectAll();

    /// Whether the user may leave no row, or select more than one. Default: true and false.
    void setAllowsEmptySelection(bool allowed) { m_allowsEmptySelection = allowed; }
    bool allowsEmptySelection() const { return m_allowsEmptySelection; }
    void setAllowsMultipleSelection(bool allowed);
    bool allowsMultipleSelection() const { return selectionMode() == ExtendedSelection; }

    /// Default: 24.
    void setRowHeight(qreal height);
    qreal rowHeight() const { return m_rowHeight; }
    /// Default: 14.
    void setIndentationPerLevel(qreal indentation);
    qreal indentationPerLevel() const { return m_indentationPerLevel; }
    void setBackgroundColor(const QColor &color);
    QColor backgroundColor() const;

    /// Empty for a row that does not exist, as are all frames.
    QRectF rectOfRow(int row) const;
    /// -1 below the last row and outside.
    int rowAtPoint(const QPointF &point) const;
    virtual QRectF frameOfCellAtColumn(int column, int row);
    /// Where the disclosure triangle is; empty for rows without one.
    virtual QRectF frameOfOutlineCellAtRow(int row);
    void scrollRowToVisible(int row);
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

    /// The view's own cell for a row, and the one that the delegate has had its say in.
    virtual OutlineViewCell dataCellForRow(int row);
    OutlineViewCell preparedCellAtRow(int row);
    virtual void drawRow(int row, QPainter *painter, const QRectF &clip);
    /// What assistive technology says for the item.
    virtual QString accessibleTextForItem(OutlineItem item);

    /// Handles a key; unhandled ones are left ignored.
    virtual void keyDown(QKeyEvent *event);
    /// The character that the key stands for: the function-key code points U+F700 (up) to U+F703
    /// (right) and U+F728 (forward delete), else what it types; null for none.
    static QChar characterOfKey(const QKeyEvent *event);

    /// The menu to pop up, not owned: that set by setMenu(), which may be null.
    virtual QMenu *menuForEvent(QContextMenuEvent *event);
    void setMenu(QMenu *menu);

    /// Starts editing in place, unless the delegate refuses.
    void editRow(int row);
    /// -1 while nothing is being edited.
    int editedRow() const;

    /// MIME types that may be dropped on the view; none by default.
    void registerForDraggedTypes(const QStringList &types);
    /// For the data source while it validates a drop: moves it to another place.
    void setDropItem(OutlineItem item, int childIndex);

protected:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override { keyDown(event); }
    void keyboardSearch(const QString &search) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                 const QModelIndex &index) const override;

    void drawSelectionInRow(int row, QPainter *painter);
    QRectF baseFrameOfCell(int row) const;
    QRectF baseFrameOfOutlineCell(int row) const;
    QRectF inViewDirection(QRectF frame) const; ///< a frame computed left to right

private:
    friend class OutlineModel;
    friend class OutlineSelectionModel;

    /// A place between or on rows where something may be dropped.
    struct DropTarget
    {
        QPointer<QObject> item;
        int childIndex = -1;
    };

    /// Never null: an object that implements nothing stands in for a missing one.
    OutlineViewDataSource *source() const;
    OutlineViewDelegate *judge() const;

    OutlineNode *nodeAtRow(int row) const;
    void notify(void (OutlineViewDelegate::*tell)(const Notification &),
                OutlineItem item = nullptr);

    QList<OutlineItem> selectedItems() const;
    void proposeSelection(const RowIndexes &proposed, int lead);
    void applySelection(const RowIndexes &rows, int lead = -1);
    void reportSelection();
    void endTracking();
    int steppedRow(int from, int step, int stop) const;
    bool mayBeSelected(int row) const;
    bool moveByKey(QKeyEvent *event);
    bool discloseByKey(QKeyEvent *event);
    RowIndexes rowsUpTo(int row) const;
    bool dragRows(const QPointF &position);
    std::unique_ptr<QMimeData> pasteboardFor(const QList<OutlineItem> &items);
    DropTarget targetAt(const QPointF &position) const;
    bool validateDrop(QDropEvent *event);
    void drawDropTarget(QPainter *painter);
    void drawDisclosure(QPainter *painter, const QRectF &frame, bool isExpanded, bool isSelected);
    void showToolTip(const QPoint &position, const QPoint &globalPosition);

    QPointer<QObject> m_dataSource;
    QPointer<QObject> m_delegate;
    QPointer<QMenu> m_menu;
    OutlineModel *m_model; // owned as a child

    bool m_allowsEmptySelection = true;
    qreal m_rowHeight = 24;
    qreal m_indentationPerLevel = 14;

    bool m_isApplyingSelection = false;
    QSet<QObject *> m_reportedItems; // compared, never followed
    QPointer<QObject> m_leadItem;    // where the keyboard goes on from
    QPointer<QObject> m_anchorItem;  // where a range begins

    bool m_isTracking = false; // between a left press and its release
    bool m_hasTriedDrag = false;
    bool m_selectOnRelease = false;
    QPointF m_pressPosition;
    QString m_search;
    QElapsedTimer m_searchTimer;
    QStringList m_draggedTypes;
    std::optional<DropTarget> m_dropTarget;
};

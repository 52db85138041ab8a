#include "platform/ui/OutlineView.h"

#include "platform/ui/OutlineViewModel.h"
#include "platform/ui/OutlineViewSelectionModel.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

/// Puts the field for editing where the cell's text is.
class CellEditor : public QStyledItemDelegate
{
public:
    CellEditor(OutlineView *view, const OutlineModel *model)
        : QStyledItemDelegate(view)
        , m_view(view)
        , m_model(model)
    { }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &,
                          const QModelIndex &) const override
    {
        return new QLineEdit(parent);
    }

    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &,
                              const QModelIndex &index) const override
    {
        const int row = m_model->nodeForIndex(index)->row;
        const QRectF cell = m_view->frameOfCellAtColumn(0, row);
        QRectF frame = m_view->rectOfRow(row).adjusted(0, 1, 0, -1);
        frame.setLeft(cell.left() - 4);
        frame.setRight(cell.right());
        editor->setGeometry(frame.toAlignedRect());
    }

private:
    OutlineView *m_view;
    const OutlineModel *m_model;
};

} // namespace

OutlineViewCell OutlineViewDelegate::outlineViewDataCellForTableColumn(OutlineView *view, int,
                                                                       OutlineItem item)
{
    return view->dataCellForRow(view->rowForItem(item));
}

qreal OutlineViewDelegate::outlineViewHeightOfRowByItem(OutlineView *view, OutlineItem)
{
    return view->rowHeight();
}

OutlineView::OutlineView(QWidget *parent)
    : QTreeView(parent)
    , m_model(new OutlineModel(this))
{
    setFrameShape(QFrame::NoFrame);
    setHeaderHidden(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setSelectionMode(SingleSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    // Indentation, triangles and what a click on them does are this view's own.
    setIndentation(0);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    header()->setMinimumSectionSize(0);

    setModel(m_model);
    const QItemSelectionModel *unused = selectionModel();
    setSelectionModel(new OutlineSelectionModel(m_model, this));
    delete unused;
    setItemDelegate(new CellEditor(this, m_model));
}

OutlineView::~OutlineView() = default;

OutlineViewDataSource *OutlineView::source() const
{
    static OutlineViewDataSource nobody;
    auto *source = qobject_cast<OutlineViewDataSource *>(m_dataSource.data());
    return source ? source : &nobody;
}

OutlineViewDelegate *OutlineView::judge() const
{
    static OutlineViewDelegate nobody;
    auto *judge = qobject_cast<OutlineViewDelegate *>(m_delegate.data());
    return judge ? judge : &nobody;
}

void OutlineView::setDataSource(QObject *dataSource)
{
    m_dataSource = dataSource;
    OutlineView::reloadData();
}

void OutlineView::setDelegate(QObject *delegate)
{
    m_delegate = delegate;
    scheduleDelayedItemsLayout();
}

void OutlineView::reloadData()
{
    const QList<QObject *> selected = selectedItems();
    const int scrolled = verticalScrollBar()->value();
    m_isApplyingSelection = true;
    const bool isNew = m_model->reload();
    m_isApplyingSelection = false;
    if (!isNew)
        return;
    const auto restore = [this](const auto &self, const OutlineNode *node) -> void {
        for (const auto &child : node->children) {
            if (child->isExpanded)
                setExpanded(m_model->indexOfNode(child.get()), true);
            self(self, child.get());
        }
    };
    restore(restore, m_model->root());
    RowIndexes rows;
    for (QObject *item : selected)
        rows.insert(rowForItem(item));
    rows.erase(-1);
    executeDelayedItemsLayout();
    applySelection(rows);
    verticalScrollBar()->setValue(scrolled);
    reportSelection();
}

OutlineNode *OutlineView::nodeAtRow(int row) const
{
    return row >= 0 && row < numberOfRows() ? m_model->rows()[size_t(row)] : nullptr;
}

int OutlineView::numberOfRows() const
{
    return int(m_model->rows().size());
}

OutlineItem OutlineView::itemAtRow(int row) const
{
    const OutlineNode *node = nodeAtRow(row);
    return node ? node->item.data() : nullptr;
}

int OutlineView::rowForItem(OutlineItem item) const
{
    const OutlineNode *node = m_model->nodeForItem(item);
    return node ? node->row : -1;
}

int OutlineView::levelForItem(OutlineItem item) const
{
    const OutlineNode *node = m_model->nodeForItem(item);
    return node ? node->level : -1;
}

bool OutlineView::isExpandable(OutlineItem item) const
{
    const OutlineNode *node = m_model->nodeForItem(item);
    return node && node->isExpandable;
}

bool OutlineView::isItemExpanded(OutlineItem item) const
{
    const OutlineNode *node = m_model->nodeForItem(item);
    return node && node->isExpanded;
}

void OutlineView::notify(void (OutlineViewDelegate::*tell)(const Notification &), OutlineItem item)
{
    Notification notification{{}, this, {}};
    if (item) {
        notification.userInfo = Dictionary::make();
        notification.userInfo.setValue(u"item"_s, QVariant::fromValue(item));
    }
    (judge()->*tell)(notification);
}

void OutlineView::expandItem(OutlineItem item, bool expandChildren)
{
    // The delegate may delete the item or have the tree read again whenever it is asked or told.
    const QPointer<QObject> guarded = item;
    const auto collapsedNode = [&]() -> OutlineNode * {
        OutlineNode *node = guarded ? m_model->nodeForItem(guarded) : nullptr;
        return node && node->isExpandable && !node->isExpanded ? node : nullptr;
    };
    if (collapsedNode() && judge()->outlineViewShouldExpandItem(this, item)) {
        notify(&OutlineViewDelegate::outlineViewItemWillExpand, item);
        if (OutlineNode *node = collapsedNode())
            m_model->loadChildren(node);
        if (OutlineNode *node = collapsedNode()) {
            m_model->setExpanded(node, true);
            setExpanded(m_model->indexOfNode(node), true);
            notify(&OutlineViewDelegate::outlineViewItemDidExpand, guarded);
        }
    }
    const OutlineNode *node = item && !guarded ? nullptr : m_model->nodeForItem(guarded);
    if (!node || !node->isExpanded || (item && !expandChildren))
        return;
    QList<QPointer<QObject>> children;
    for (const auto &child : node->children)
        children << child->item;
    for (const QPointer<QObject> &child : children) {
        if (child)
            expandItem(child, expandChildren);
    }
}

void OutlineView::collapseItem(OutlineItem item)
{
    const QPointer<QObject> guarded = item;
    if (!item || !isItemExpanded(item) || !judge()->outlineViewShouldCollapseItem(this, item))
        return;
    notify(&OutlineViewDelegate::outlineViewItemWillCollapse, guarded);
    OutlineNode *node = guarded ? m_model->nodeForItem(guarded) : nullptr;
    if (!node || !node->isExpanded)
        return;
    m_model->setExpanded(node, false);
    setExpanded(m_model->indexOfNode(node), false);
    applySelection(selectedRowIndexes()); // rows that are no longer shown are not selected either
    notify(&OutlineViewDelegate::outlineViewItemDidCollapse, guarded);
    reportSelection();
}

void OutlineView::setRowHeight(qreal height)
{
    m_rowHeight = height;
    scheduleDelayedItemsLayout();
}

void OutlineView::setIndentationPerLevel(qreal indentation)
{
    m_indentationPerLevel = indentation;
    viewport()->update();
}

void OutlineView::setMenu(QMenu *menu)
{
    m_menu = menu;
}

void OutlineView::editRow(int row)
{
    if (const OutlineNode *node = nodeAtRow(row))
        edit(m_model->indexOfNode(node), AllEditTriggers, nullptr);
}

int OutlineView::editedRow() const
{
    const QModelIndex index = currentIndex();
    return state() == EditingState && index.isValid() ? m_model->nodeForIndex(index)->row : -1;
}

bool OutlineView::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    const bool isWanted = trigger == AllEditTriggers || (trigger & editTriggers());
    const OutlineNode *node = index.isValid() ? m_model->nodeForIndex(index) : nullptr;
    if (!isWanted || !node || !node->item || state() == EditingState
        || !judge()->outlineViewShouldEditTableColumn(this, 0, node->item)) {
        return false;
    }
    return QTreeView::edit(index, trigger, event);
}

#include "platform/ui/OutlineViewModel.h"

#include "platform/ui/OutlineView.h"

#include <cmath>

OutlineModel::OutlineModel(OutlineView *view)
    : QAbstractItemModel(view)
    , m_view(view)
    , m_root(std::make_unique<OutlineNode>())
{
    m_root->isExpandable = m_root->isExpanded = m_root->isLoaded = true;
}

bool OutlineModel::reload()
{
    // Read into a tree of its own first: the data source may do anything while it is asked.
    const quint64 reading = ++m_reading;
    auto root = std::make_unique<OutlineNode>();
    root->isExpandable = root->isExpanded = root->isLoaded = true;
    NodeOfItem known;
    const NodeOfItem previous = m_nodeOfItem;
    root->children = readChildren(root.get(), known, previous);
    if (reading != m_reading)
        return false;

    beginResetModel();
    m_root = std::move(root);
    m_nodeOfItem = std::move(known);
    numberRows();
    endResetModel();
    return true;
}

OutlineModel::Nodes OutlineModel::readChildren(OutlineNode *parent, NodeOfItem &known,
                                               const NodeOfItem &previous) const
{
    // Each answer may have had the tree read again, and then parent and previous are no more.
    const quint64 reading = m_reading;
    const QPointer<QObject> parentItem = parent->item;
    const bool isRoot = parent->level < 0;
    Nodes children;
    const int count = m_view->source()->outlineViewNumberOfChildrenOfItem(m_view, parentItem);
    for (int i = 0; i < count && reading == m_reading && (isRoot || parentItem); ++i) {
        const QPointer<QObject> item = m_view->source()->outlineViewChild(m_view, i, parentItem);
        if (!item || reading != m_reading)
            continue;
        const OutlineNode *twin = known.value(item);
        if (twin && twin->item)
            continue;
        const bool isExpandable = m_view->source()->outlineViewIsItemExpandable(m_view, item);
        if (!item || reading != m_reading)
            continue;
        auto node = std::make_unique<OutlineNode>();
        node->item = item;
        node->parent = parent;
        node->position = int(children.size());
        node->level = parent->level + 1;
        node->isExpandable = isExpandable;
        known.insert(item, node.get());
        const OutlineNode *before = previous.value(item);
        if (isExpandable && before && before->item == item && before->isLoaded) {
            node->isExpanded = before->isExpanded;
            node->isLoaded = true;
            node->children = readChildren(node.get(), known, previous);
        }
        children.push_back(std::move(node));
    }
    return children;
}

void OutlineModel::loadChildren(OutlineNode *node)
{
    if (node->isLoaded || !node->item)
        return;
    node->isLoaded = true;
    const quint64 reading = m_reading;
    NodeOfItem known = m_nodeOfItem;
    Nodes children = readChildren(node, known, {});
    if (reading != m_reading || children.empty())
        return;
    beginInsertRows(indexOfNode(node), 0, int(children.size()) - 1);
    node->children = std::move(children);
    m_nodeOfItem = std::move(known);
    numberRows();
    endInsertRows();
}

void OutlineModel::setExpanded(OutlineNode *node, bool isExpanded)
{
    node->isExpanded = isExpanded;
    numberRows();
}

void OutlineModel::numberRows()
{
    for (OutlineNode *node : m_nodeOfItem)
        node->row = -1;
    m_rows.clear();
    const auto visit = [this](const auto &self, const OutlineNode *node) -> void {
        for (const auto &child : node->children) {
            child->row = int(m_rows.size());
            m_rows.push_back(child.get());
            if (child->isExpanded)
                self(self, child.get());
        }
    };
    visit(visit, m_root.get());
}

OutlineNode *OutlineModel::nodeForItem(OutlineItem item) const
{
    if (!item)
        return m_root.get();
    OutlineNode *node = m_nodeOfItem.value(item);
    return node && node->item == item ? node : nullptr;
}

OutlineNode *OutlineModel::nodeForIndex(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<OutlineNode *>(index.internalPointer()) : m_root.get();
}

QModelIndex OutlineModel::indexOfNode(const OutlineNode *node) const
{
    return node && node->parent ? createIndex(node->position, 0, node) : QModelIndex();
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeForIndex(parent)->children[size_t(row)].get());
}

QModelIndex OutlineModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? indexOfNode(nodeForIndex(index)->parent) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex &parent) const
{
    return int(nodeForIndex(parent)->children.size());
}

bool OutlineModel::hasChildren(const QModelIndex &parent) const
{
    const OutlineNode *node = nodeForIndex(parent);
    return node->isLoaded ? !node->children.empty() : node->isExpandable;
}

QVariant OutlineModel::data(const QModelIndex &index, int role) const
{
    const OutlineNode *node = nodeForIndex(index);
    if (!node->item)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_view->source()->outlineViewObjectValueForTableColumn(m_view, 0, node->item);
    case Qt::AccessibleTextRole:
        return m_view->accessibleTextForItem(node->item);
    case Qt::SizeHintRole:
        return QSize(
            1, int(std::ceil(m_view->judge()->outlineViewHeightOfRowByItem(m_view, node->item))));
    default:
        return {};
    }
}

bool OutlineModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const QPointer<QObject> item = nodeForIndex(index)->item;
    if (role != Qt::EditRole || !item)
        return false;
    m_view->source()->outlineViewSetObjectValue(m_view, value, 0, item);
    // The data source may have had the tree read again, and then this index is no more.
    const QModelIndex still = item ? indexOfNode(nodeForItem(item)) : QModelIndex();
    if (still.isValid())
        Q_EMIT dataChanged(still, still);
    return true;
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
}

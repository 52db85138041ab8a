#pragma once

#include "platform/ui/OutlineViewProtocols.h"

#include <QAbstractItemModel>
#include <QHash>

#include <vector>

/// One item of the tree as it was last read.
struct OutlineNode
{
    QPointer<QObject> item;
    OutlineNode *parent = nullptr;
    int position = 0; ///< Among the parent's children.
    int level = -1;
    int row = -1; ///< -1 while an ancestor is collapsed.
    bool isExpandable = false;
    bool isExpanded = false;
    bool isLoaded = false; ///< Whether the children were read.
    std::vector<std::unique_ptr<OutlineNode>> children;
};

/// What the data source of an outline view said at the last reload, for Qt's tree view.
class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit OutlineModel(OutlineView *view);

    /// Reads the tree anew. False when the data source had the tree read again meanwhile, so that
    /// the result is that of the later reading.
    bool reload();
    void loadChildren(OutlineNode *node);
    /// Sets the flag and numbers the rows anew.
    void setExpanded(OutlineNode *node, bool isExpanded);

    const std::vector<OutlineNode *> &rows() const { return m_rows; }
    OutlineNode *root() const { return m_root.get(); }
    /// The root for null; null for an item that is not in the tree.
    OutlineNode *nodeForItem(OutlineItem item) const;
    OutlineNode *nodeForIndex(const QModelIndex &index) const;
    QModelIndex indexOfNode(const OutlineNode *node) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &) const override { return 1; }
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    using NodeOfItem = QHash<QObject *, OutlineNode *>;
    using Nodes = std::vector<std::unique_ptr<OutlineNode>>;

    Nodes readChildren(OutlineNode *parent, NodeOfItem &known, const NodeOfItem &previous) const;
    void numberRows();

    OutlineView *m_view;
    std::unique_ptr<OutlineNode> m_root;
    NodeOfItem m_nodeOfItem;
    std::vector<OutlineNode *> m_rows;
    quint64 m_reading = 0;
};

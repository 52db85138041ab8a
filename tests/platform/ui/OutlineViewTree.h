#pragma once

#include "tests/support/OutlineRows.h"

/// With the left button pressed.
inline void dragTo(OutlineView &view, int row)
{
    const QPoint to = middleOfRow(view, row);
    QMouseEvent move(QEvent::MouseMove, to, view.viewport()->mapToGlobal(to), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(view.viewport(), &move);
}

/// An item of a tree, named by its object name, with its children as QObject children.
inline QObject *makeItem(const QString &name, QObject *parent)
{
    auto *item = new QObject(parent);
    item->setObjectName(name);
    return item;
}

/// Data source and delegate over a tree of objects, which writes down what it is told.
class OutlineTree : public QObject, public OutlineViewDataSource, public OutlineViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(OutlineViewDataSource OutlineViewDelegate)

public:
    QObject root;
    QStringList log;
    QList<QObject *> refused; ///< Neither selected, opened, closed nor edited.
    std::function<void()> whenAsked;
    std::function<RowIndexes(const RowIndexes &)> proposal;
    QByteArray pasteboard; ///< Written for drags, unless empty.
    Qt::DropAction dropAction = Qt::IgnoreAction;

    /// "A(a b) B(c)": items at the top with their children.
    explicit OutlineTree(const QString &tree) { growTree(tree, &root, makeItem); }
    QObject *item(const QString &name) const { return root.findChild<QObject *>(name); }
    QStringList takeLog() { return std::exchange(log, {}); }

    using View = OutlineView;
    using Item = OutlineItem;
    int outlineViewNumberOfChildrenOfItem(View *, Item item) override
    {
        return int((item ? item : &root)->children().size());
    }
    Item outlineViewChild(View *, int index, Item item) override
    {
        if (whenAsked)
            std::exchange(whenAsked, nullptr)();
        return (item ? item : &root)->children().value(index);
    }
    bool outlineViewIsItemExpandable(View *, Item item) override
    {
        return !item->children().isEmpty();
    }
    QVariant outlineViewObjectValueForTableColumn(View *, int, Item item) override
    {
        return item->objectName();
    }
    void outlineViewSetObjectValue(View *, const QVariant &value, int, Item item) override
    {
        item->setObjectName(value.toString());
    }
    bool outlineViewWriteItems(View *, const QList<Item> &items, QMimeData *data) override
    {
        QStringList names;
        for (const Item item : items)
            names << item->objectName();
        log << u"write "_s + names.join(u' ');
        data->setData(u"text/plain"_s, pasteboard);
        return !pasteboard.isEmpty();
    }
    void outlineViewDraggingSessionWillBeginAtPoint(View *, QDrag *, QPointF,
                                                    const QList<Item> &items) override
    {
        log << u"begin %1"_s.arg(items.size());
    }
    void outlineViewDraggingSessionEndedAtPoint(View *, QDrag *, QPointF,
                                                Qt::DropAction action) override
    {
        log << u"ended %1"_s.arg(action);
    }
    Qt::DropAction outlineViewValidateDrop(View *, const QDropEvent *, Item item,
                                           int index) override
    {
        log << describe(u"validate"_s, item, index);
        return dropAction;
    }
    bool outlineViewAcceptDrop(View *, const QDropEvent *, Item item, int index) override
    {
        log << describe(u"accept"_s, item, index);
        return true;
    }

    bool outlineViewShouldExpandItem(View *, Item item) override { return may(item); }
    bool outlineViewShouldCollapseItem(View *, Item item) override { return may(item); }
    bool outlineViewShouldSelectItem(View *, Item item) override { return may(item); }
    bool outlineViewShouldEditTableColumn(View *, int, Item item) override { return may(item); }
    RowIndexes outlineViewSelectionIndexesForProposedSelection(View *,
                                                               const RowIndexes &rows) override
    {
        return proposal ? proposal(rows) : rows;
    }
    void outlineViewSelectionIsChanging(const Notification &) override { log << u"changing"_s; }
    void outlineViewSelectionDidChange(const Notification &) override { log << u"changed"_s; }
    void outlineViewItemWillExpand(const Notification &n) override { told(u"will open "_s, n); }
    void outlineViewItemDidExpand(const Notification &n) override { told(u"opened "_s, n); }
    void outlineViewItemWillCollapse(const Notification &n) override { told(u"will close "_s, n); }
    void outlineViewItemDidCollapse(const Notification &n) override { told(u"closed "_s, n); }

private:
    static QString describe(const QString &what, Item item, int index)
    {
        return u"%1 %2 %3"_s.arg(what, item ? item->objectName() : u"root"_s).arg(index);
    }
    bool may(Item item) const { return !refused.contains(item); }
    void told(const QString &what, const Notification &notification)
    {
        log << what + notification.userInfo.value<QObject *>(u"item"_s)->objectName();
    }
};

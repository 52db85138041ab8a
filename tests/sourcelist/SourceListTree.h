#pragma once

#include "sourcelist/PXSourceList.h"
#include "tests/support/OutlineRows.h"

/// A heading or entry of a tree, with its children as QObject children.
struct SourceItem : QObject
{
    SourceItem(const QString &name, QObject *parent)
        : QObject(parent)
    {
        setObjectName(name);
    }
    qint64 badge = -1;
    QImage icon;
};

/// Data source over "A(a b) B(c)": headings with their entries. Implements only what it must.
class SourceTree : public QObject, public PXSourceListDataSource
{
    Q_OBJECT
    Q_INTERFACES(PXSourceListDataSource)

public:
    QObject root;

    explicit SourceTree(const QString &tree)
    {
        growTree(tree, &root,
                 [](const QString &name, QObject *parent) { return new SourceItem(name, parent); });
    }
    SourceItem *item(const QString &name) const
    {
        return static_cast<SourceItem *>(root.findChild<QObject *>(name));
    }

    int sourceListNumberOfChildrenOfItem(PXSourceList *, OutlineItem item) override
    {
        return int((item ? item : &root)->children().size());
    }
    OutlineItem sourceListChild(PXSourceList *, int index, OutlineItem item) override
    {
        return (item ? item : &root)->children().value(index);
    }
    QVariant sourceListObjectValueForItem(PXSourceList *, OutlineItem item) override
    {
        return item->objectName();
    }
    bool sourceListIsItemExpandable(PXSourceList *, OutlineItem item) override
    {
        return !item->children().isEmpty();
    }
};

/// The same with badges and icons.
class BadgedTree : public SourceTree
{
    Q_OBJECT
    Q_INTERFACES(PXSourceListDataSource)

public:
    using SourceTree::SourceTree;
    using List = PXSourceList;
    using Item = OutlineItem;

    bool sourceListItemHasBadge(List *, Item item) override { return of(item)->badge != -1; }
    qint64 sourceListBadgeValueForItem(List *, Item item) override { return of(item)->badge; }
    bool sourceListItemHasIcon(List *, Item item) override { return !of(item)->icon.isNull(); }
    QImage sourceListIconForItem(List *, Item item) override { return of(item)->icon; }

private:
    static SourceItem *of(Item item) { return static_cast<SourceItem *>(item); }
};

/// Delegate that writes down what it hears.
class SourceDelegate : public QObject, public PXSourceListDelegate
{
    Q_OBJECT
    Q_INTERFACES(PXSourceListDelegate)

public:
    bool keepsGroupsOpen = true;
    QMenu *menu = nullptr;
    OutlineItem askedForMenu = nullptr;
    QStringList log;
    RowIndexes deletedRows;
    std::function<void()> whenSelected;

    QStringList takeLog() { return std::exchange(log, {}); }

    using List = PXSourceList;
    bool sourceListIsGroupAlwaysExpanded(List *, OutlineItem) override { return keepsGroupsOpen; }
    QMenu *sourceListMenuForEvent(PXSourceList *, QContextMenuEvent *, OutlineItem item) override
    {
        askedForMenu = item;
        return menu;
    }

public Q_SLOTS:
    void sourceListSelectionIsChanging(const Notification &n) { heard(n); }
    void sourceListSelectionDidChange(const Notification &n)
    {
        heard(n);
        if (whenSelected)
            whenSelected();
    }
    void sourceListItemWillExpand(const Notification &n) { heard(n); }
    void sourceListItemDidExpand(const Notification &n) { heard(n); }
    void sourceListItemWillCollapse(const Notification &n) { heard(n); }
    void sourceListItemDidCollapse(const Notification &n) { heard(n); }
    void sourceListDeleteKeyPressedOnRows(const Notification &n)
    {
        heard(n);
        deletedRows = n.userInfo.value<RowIndexes>(u"rows"_s);
    }

private:
    void heard(const Notification &n)
    {
        const auto *item = n.userInfo.value<QObject *>(u"item"_s);
        EXPECT_TRUE(qobject_cast<PXSourceList *>(n.object));
        log << n.name.mid(12) + (item ? u" "_s + item->objectName() : QString());
    }
};

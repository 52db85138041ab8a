#include "tests/sourcelist/SourceListTree.h"

#include <QUrl>

namespace {

/// Answers every optional question with something else than the default, and by its own name.
class Answerer : public SourceTree, public PXSourceListDelegate
{
    Q_OBJECT
    Q_INTERFACES(PXSourceListDataSource PXSourceListDelegate)

public:
    using SourceTree::SourceTree;
    using List = PXSourceList;
    using Item = OutlineItem;
    using Items = QList<OutlineItem>;
    using Drop = const QDropEvent *;
    using Data = QMimeData *;

    QByteArrayList asked;
    template <typename T>
    T said(const QByteArray &name, T answer)
    {
        asked << name;
        return answer;
    }

    void sourceListSetObjectValue(List *, const QVariant &value, Item) override
    {
        asked << "set " + value.toByteArray();
    }
    Item sourceListItemForPersistentObject(List *, const QVariant &) override
    {
        return said<Item>("itemForPersistent", this);
    }
    QVariant sourceListPersistentObjectForItem(List *, Item) override { return said("object", 5); }
    bool sourceListWriteItems(List *, const Items &, Data) override { return said("write", true); }
    Qt::DropAction sourceListValidateDrop(List *, Drop, Item, int index) override
    {
        return said("validate " + QByteArray::number(index), Qt::CopyAction);
    }
    bool sourceListAcceptDrop(List *, Drop, Item, int index) override
    {
        return said("accept " + QByteArray::number(index), true);
    }
    QStringList sourceListNamesOfPromisedFilesDroppedAtDestination(List *, const QUrl &,
                                                                   const Items &) override
    {
        return said("promised", QStringList{u"file"_s});
    }
    std::unique_ptr<QMimeData> sourceListPasteboardWriterForItem(List *, Item) override
    {
        return said("writer", std::make_unique<QMimeData>());
    }
    void sourceListDraggingSessionWillBeginAtPoint(List *, QDrag *, QPointF, const Items &) override
    {
        asked << "begin";
    }
    void sourceListDraggingSessionEndedAtPoint(List *, QDrag *, QPointF, Qt::DropAction) override
    {
        asked << "ended";
    }
    void sourceListUpdateDraggingItemsForDrag(List *, Drop) override { asked << "update"; }
    bool sourceListShouldExpandItem(List *, Item) override { return said("expand", false); }
    bool sourceListShouldCollapseItem(List *, Item) override { return said("collapse", false); }
    bool sourceListShouldSelectItem(List *, Item) override { return said("select", false); }
    RowIndexes sourceListSelectionIndexesForProposedSelection(List *, const RowIndexes &) override
    {
        return said("indexes", RowIndexes{9});
    }
    bool sourceListShouldEditItem(List *, Item) override { return said("edit", false); }
    bool sourceListShouldTrackCell(List *, const OutlineViewCell &, Item) override
    {
        return said("track", true);
    }
    OutlineViewCell sourceListDataCellForItem(List *, Item) override
    {
        OutlineViewCell cell;
        cell.kind = OutlineViewCell::Custom;
        return said("cell", cell);
    }
    qreal sourceListHeightOfRowByItem(List *, Item) override { return said("height", 40.0); }
    void sourceListWillDisplayCell(List *, OutlineViewCell &cell, Item) override
    {
        cell.text = said("willDisplay", u"!"_s);
    }
};

/// Puts every optional question to the list, and returns the answers of those that have one.
QVariantList answers(PXSourceList &l, OutlineItem item)
{
    OutlineViewCell cell;
    l.outlineViewSetObjectValue(&l, u"x"_s, 0, item);
    l.outlineViewDraggingSessionWillBeginAtPoint(&l, nullptr, {}, {item});
    l.outlineViewDraggingSessionEndedAtPoint(&l, nullptr, {}, Qt::IgnoreAction);
    l.outlineViewUpdateDraggingItemsForDrag(&l, nullptr);
    l.outlineViewWillDisplayCell(&l, cell, 0, item);
    return {cell.text,
            l.outlineViewItemForPersistentObject(&l, 5) != nullptr,
            l.outlineViewPersistentObjectForItem(&l, item),
            l.outlineViewWriteItems(&l, {item}, nullptr),
            int(l.outlineViewValidateDrop(&l, nullptr, item, 3)),
            l.outlineViewAcceptDrop(&l, nullptr, item, 3),
            l.outlineViewNamesOfPromisedFilesDroppedAtDestination(&l, QUrl(), {item}),
            l.outlineViewPasteboardWriterForItem(&l, item) != nullptr,
            l.outlineViewShouldExpandItem(&l, item),
            l.outlineViewShouldCollapseItem(&l, item),
            l.outlineViewShouldSelectItem(&l, item),
            *l.outlineViewSelectionIndexesForProposedSelection(&l, {1}).begin(),
            l.outlineViewShouldEditTableColumn(&l, 0, item),
            l.outlineViewShouldTrackCell(&l, {}, 0, item),
            int(l.outlineViewDataCellForTableColumn(&l, 0, item).kind),
            l.outlineViewHeightOfRowByItem(&l, item)};
}

} // namespace

TEST(SourceListForwarding, AnswersForThoseWhoDoNotImplement)
{
    SourceTree minimal(u"A(a)"_s);
    SourceDelegate delegate;
    QObject stranger; // implements neither protocol
    PXSourceList list;
    list.setRowHeight(33);
    const int text = OutlineViewCell::Text;
    const QVariantList usual{QString(), false, QVariant(), false, 0,    false, QStringList(), false,
                             true,      true,  true,       1,     true, false, text,          33.0};
    for (QObject *each : {static_cast<QObject *>(nullptr), &stranger}) {
        list.setDelegate(each);
        list.setDataSource(each);
        EXPECT_EQ(answers(list, minimal.item(u"a"_s)), usual);
        EXPECT_EQ(list.outlineViewNumberOfChildrenOfItem(&list, nullptr), 0);
        EXPECT_EQ(list.outlineViewChild(&list, 0, nullptr), nullptr);
        EXPECT_FALSE(list.outlineViewIsItemExpandable(&list, nullptr));
        EXPECT_FALSE(list.outlineViewObjectValueForTableColumn(&list, 0, nullptr).isValid());
        EXPECT_EQ(list.numberOfGroups() + list.numberOfRows(), 0);
        EXPECT_EQ(list.badgeValueForItem(minimal.item(u"a"_s)), PXSourceListDataSource::noBadge);
    }
    list.setDelegate(&delegate);
    list.setDataSource(&minimal);
    EXPECT_EQ(answers(list, minimal.item(u"a"_s)), usual);
    EXPECT_EQ(list.badgeValueForItem(minimal.item(u"a"_s)), PXSourceListDataSource::noBadge);
}

TEST(SourceListForwarding, AsksThoseWhoImplement)
{
    Answerer answerer(u"A(a)"_s);
    PXSourceList list;
    list.setDelegate(&answerer);
    list.setDataSource(&answerer);
    answerer.asked.clear();
    const QStringList file{u"file"_s};
    const int copy = Qt::CopyAction, custom = OutlineViewCell::Custom;
    const QVariantList all{u"!"_s, true,  5,     true, copy,  true, file,   true,
                           false,  false, false, 9,    false, true, custom, 40.0};
    EXPECT_EQ(answers(list, answerer.item(u"a"_s)), all);
    EXPECT_EQ(answerer.asked.join(' ').toStdString(),
              "set x begin ended update willDisplay itemForPersistent object write validate 3 "
              "accept 3 promised writer expand collapse select indexes edit track cell height");
    // About headings the list decides by itself.
    answerer.asked.clear();
    QObject *heading = answerer.item(u"A"_s);
    EXPECT_FALSE(list.outlineViewShouldSelectItem(&list, heading));
    EXPECT_FALSE(list.outlineViewShouldEditTableColumn(&list, 0, heading));
    EXPECT_TRUE(list.outlineViewSelectionIndexesForProposedSelection(&list, {0}).empty());
    EXPECT_TRUE(list.outlineViewIsGroupItem(&list, heading));
    EXPECT_TRUE(answerer.asked.isEmpty());
}

#include "SourceListForwardingTest.moc"

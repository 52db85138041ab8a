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
    QString last;
    template <typename T>
    T said(const QString &name, T answer)
    {
        last = name;
        return answer;
    }

    void sourceListSetObjectValue(PXSourceList *, const QVariant &value, OutlineItem) override
    {
        last = u"set "_s + value.toString();
    }
    OutlineItem sourceListItemForPersistentObject(PXSourceList *, const QVariant &) override
    {
        return said<OutlineItem>(u"itemForPersistent"_s, this);
    }
    QVariant sourceListPersistentObjectForItem(PXSourceList *, OutlineItem) override
    {
        return said(u"persistentForItem"_s, 5);
    }
    bool sourceListWriteItems(PXSourceList *, const QList<OutlineItem> &, QMimeData *) override
    {
        return said(u"write"_s, true);
    }
    Qt::DropAction sourceListValidateDrop(PXSourceList *, const QDropEvent *, OutlineItem,
                                          int index) override
    {
        return said(u"validate %1"_s.arg(index), Qt::CopyAction);
    }
    bool sourceListAcceptDrop(PXSourceList *, const QDropEvent *, OutlineItem, int index) override
    {
        return said(u"accept %1"_s.arg(index), true);
    }
    QStringList
    sourceListNamesOfPromisedFilesDroppedAtDestination(PXSourceList *, const QUrl &,
                                                       const QList<OutlineItem> &) override
    {
        return said(u"promised"_s, QStringList{u"file"_s});
    }
    std::unique_ptr<QMimeData> sourceListPasteboardWriterForItem(PXSourceList *,
                                                                 OutlineItem) override
    {
        return said(u"writer"_s, std::make_unique<QMimeData>());
    }
    void sourceListDraggingSessionWillBeginAtPoint(PXSourceList *, QDrag *, QPointF,
                                                   const QList<OutlineItem> &) override
    {
        last = u"begin"_s;
    }
    void sourceListDraggingSessionEndedAtPoint(PXSourceList *, QDrag *, QPointF,
                                               Qt::DropAction) override
    {
        last = u"ended"_s;
    }
    void sourceListUpdateDraggingItemsForDrag(PXSourceList *, const QDropEvent *) override
    {
        last = u"update"_s;
    }
    bool sourceListShouldExpandItem(PXSourceList *, OutlineItem) override
    {
        return said(u"expand"_s, false);
    }
    bool sourceListShouldCollapseItem(PXSourceList *, OutlineItem) override
    {
        return said(u"collapse"_s, false);
    }
    bool sourceListShouldSelectItem(PXSourceList *, OutlineItem) override
    {
        return said(u"select"_s, false);
    }
    RowIndexes sourceListSelectionIndexesForProposedSelection(PXSourceList *,
                                                              const RowIndexes &) override
    {
        return said(u"indexes"_s, RowIndexes{9});
    }
    bool sourceListShouldEditItem(PXSourceList *, OutlineItem) override
    {
        return said(u"edit"_s, false);
    }
    bool sourceListShouldTrackCell(PXSourceList *, const OutlineViewCell &, OutlineItem) override
    {
        return said(u"track"_s, true);
    }
    OutlineViewCell sourceListDataCellForItem(PXSourceList *, OutlineItem) override
    {
        OutlineViewCell cell;
        cell.kind = OutlineViewCell::Custom;
        return said(u"cell"_s, cell);
    }
    qreal sourceListHeightOfRowByItem(PXSourceList *, OutlineItem) override
    {
        return said(u"height"_s, 40.0);
    }
    void sourceListWillDisplayCell(PXSourceList *, OutlineViewCell &cell, OutlineItem) override
    {
        cell.text = u"!"_s;
        last = u"willDisplay"_s;
    }
};

struct Question
{
    const char *name; // as Answerer writes it down
    std::function<QVariant(PXSourceList &, OutlineItem entry)> ask;
    QVariant byDefault;
    QVariant answered;
};

const QVariant none;

const std::vector<Question> questions{
    {"set x", [](auto &l, auto i) { return l.outlineViewSetObjectValue(&l, u"x"_s, 0, i), none; },
     none, none},
    {"itemForPersistent",
     [](auto &l, auto) { return !!l.outlineViewItemForPersistentObject(&l, 5); }, false, true},
    {"persistentForItem",
     [](auto &l, auto i) { return l.outlineViewPersistentObjectForItem(&l, i); }, none, 5},
    {"write", [](auto &l, auto i) { return l.outlineViewWriteItems(&l, {i}, nullptr); }, false,
     true},
    {"validate 3",
     [](auto &l, auto i) { return int(l.outlineViewValidateDrop(&l, nullptr, i, 3)); }, 0,
     int(Qt::CopyAction)},
    {"accept 3", [](auto &l, auto i) { return l.outlineViewAcceptDrop(&l, nullptr, i, 3); }, false,
     true},
    {"promised",
     [](auto &l, auto i) {
         return l.outlineViewNamesOfPromisedFilesDroppedAtDestination(&l, QUrl(), {i});
     },
     QStringList(), QStringList{u"file"_s}},
    {"writer", [](auto &l, auto i) { return !!l.outlineViewPasteboardWriterForItem(&l, i); }, false,
     true},
    {"begin",
     [](auto &l, auto i) {
         return l.outlineViewDraggingSessionWillBeginAtPoint(&l, nullptr, {}, {i}), none;
     },
     none, none},
    {"ended",
     [](auto &l, auto) {
         return l.outlineViewDraggingSessionEndedAtPoint(&l, nullptr, {}, Qt::IgnoreAction), none;
     },
     none, none},
    {"update",
     [](auto &l, auto) { return l.outlineViewUpdateDraggingItemsForDrag(&l, nullptr), none; }, none,
     none},
    {"expand", [](auto &l, auto i) { return l.outlineViewShouldExpandItem(&l, i); }, true, false},
    {"collapse", [](auto &l, auto i) { return l.outlineViewShouldCollapseItem(&l, i); }, true,
     false},
    {"select", [](auto &l, auto i) { return l.outlineViewShouldSelectItem(&l, i); }, true, false},
    {"indexes",
     [](auto &l, auto) {
         return *l.outlineViewSelectionIndexesForProposedSelection(&l, {1}).begin();
     },
     1, 9},
    {"edit", [](auto &l, auto i) { return l.outlineViewShouldEditTableColumn(&l, 0, i); }, true,
     false},
    {"track", [](auto &l, auto i) { return l.outlineViewShouldTrackCell(&l, {}, 0, i); }, false,
     true},
    {"cell",
     [](auto &l, auto i) { return int(l.outlineViewDataCellForTableColumn(&l, 0, i).kind); },
     int(OutlineViewCell::Text), int(OutlineViewCell::Custom)},
    {"height", [](auto &l, auto i) { return l.outlineViewHeightOfRowByItem(&l, i); }, 33.0, 40.0},
    {"willDisplay",
     [](auto &l, auto i) {
         OutlineViewCell cell;
         l.outlineViewWillDisplayCell(&l, cell, 0, i);
         return cell.text;
     },
     QString(), u"!"_s},
};

} // namespace

TEST(SourceListForwarding, AnswersForThoseWhoDoNotImplement)
{
    SourceTree minimal(u"A(a)"_s);
    SourceDelegate delegate;
    QObject stranger; // implements neither protocol
    PXSourceList list;
    list.setRowHeight(33);
    const auto askAll = [&](const char *who, OutlineItem entry) {
        for (const Question &question : questions) {
            EXPECT_EQ(question.ask(list, entry), question.byDefault) << who << question.name;
        }
    };
    for (QObject *each : {static_cast<QObject *>(nullptr), &stranger}) {
        list.setDelegate(each);
        list.setDataSource(each);
        askAll("absent ", minimal.item(u"a"_s));
        EXPECT_EQ(list.outlineViewNumberOfChildrenOfItem(&list, nullptr), 0);
        EXPECT_EQ(list.outlineViewChild(&list, 0, nullptr), nullptr);
        EXPECT_FALSE(list.outlineViewIsItemExpandable(&list, nullptr));
        EXPECT_FALSE(list.outlineViewObjectValueForTableColumn(&list, 0, nullptr).isValid());
        EXPECT_EQ(list.numberOfGroups() + list.numberOfRows(), 0);
        EXPECT_EQ(list.badgeValueForItem(minimal.item(u"a"_s)), PXSourceListDataSource::noBadge);
    }
    list.setDelegate(&delegate);
    list.setDataSource(&minimal);
    askAll("minimal ", minimal.item(u"a"_s));
    EXPECT_EQ(list.badgeValueForItem(minimal.item(u"a"_s)), PXSourceListDataSource::noBadge);
}

TEST(SourceListForwarding, AsksThoseWhoImplement)
{
    Answerer answerer(u"A(a)"_s);
    PXSourceList list;
    list.setDelegate(&answerer);
    list.setDataSource(&answerer);
    for (const Question &question : questions) {
        answerer.last.clear();
        EXPECT_EQ(question.ask(list, answerer.item(u"a"_s)), question.answered) << question.name;
        EXPECT_EQ(answerer.last, QLatin1StringView(question.name));
    }
    // About headings the list decides by itself.
    answerer.last.clear();
    QObject *heading = answerer.item(u"A"_s);
    EXPECT_FALSE(list.outlineViewShouldSelectItem(&list, heading));
    EXPECT_FALSE(list.outlineViewShouldEditTableColumn(&list, 0, heading));
    EXPECT_TRUE(list.outlineViewSelectionIndexesForProposedSelection(&list, {0}).empty());
    EXPECT_TRUE(list.outlineViewIsGroupItem(&list, heading));
    EXPECT_TRUE(answerer.last.isEmpty());
}

#include "SourceListForwardingTest.moc"

#include "tests/sourcelist/SourceListTree.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QToolTip>

/// A shown list of "A(a b) B() C(c d)", always open: rows A a b B C c d.
struct PXSourceListTest : testing::Test
{
    BadgedTree tree{u"A(a b) B() C(c d)"_s};
    SourceDelegate delegate;
    PXSourceList list;

    PXSourceListTest()
    {
        list.setDelegate(&delegate);
        list.setDataSource(&tree);
        list.resize(200, 300);
        list.show();
        delegate.log.clear();
    }
};

TEST_F(PXSourceListTest, HeadingsAreNeverSelected)
{
    EXPECT_EQ(rowsOf(list), u"A a b B C c d");
    click(list, 0);
    EXPECT_EQ(list.selectedRow(), -1);
    click(list, 1);
    EXPECT_EQ(delegate.takeLog(), (QStringList{u"SelectionIsChanging"_s, u"SelectionDidChange"_s}));
    click(list, 4);
    QTest::keyClick(&list, Qt::Key_C); // begins the heading's title as well
    EXPECT_EQ(rowsOf(list), u"A a b B C [c] d");
    delegate.log.clear();
    list.selectRowIndexes({3}, false);
    list.selectRowIndexes({}, false); // an empty request does not clear
    list.selectRowIndexes({-1, 7}, false);
    EXPECT_EQ(rowsOf(list), u"A a b B C [c] d");
    EXPECT_TRUE(delegate.takeLog().isEmpty());
    list.selectRowIndexes({0, 2}, false);
    EXPECT_EQ(rowsOf(list), u"A a [b] B C c d");
    EXPECT_EQ(delegate.takeLog(), QStringList{u"SelectionDidChange"_s});
    list.deselectAll();
    EXPECT_EQ(list.selectedRow(), -1);
}

TEST_F(PXSourceListTest, KnowsTheLettersOfItsLocale)
{
    BadgedTree titles(u"Diş(İnternet Isı)"_s);
    for (const auto &[typed, rows] :
         {std::pair(u"i"_s, u"Diş [İnternet] Isı"), std::pair(u"ı"_s, u"Diş İnternet [Isı]")}) {
        PXSourceList turkish;
        turkish.setLocale(QLocale(QLocale::Turkish));
        turkish.setDelegate(&delegate);
        turkish.setDataSource(&titles);
        EXPECT_EQ(turkish.preparedCellAtRow(0).text, u"DİŞ");
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, typed);
        QApplication::sendEvent(&turkish, &press);
        EXPECT_EQ(rowsOf(turkish), rows);
    }
}

TEST_F(PXSourceListTest, HeadingsThatStayOpenCannotBeClosed)
{
    list.selectRowIndexes({1}, false);
    delegate.log.clear();
    for (const qreal x : {2.0, 7.0, 50.0})
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {int(x), 10});
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, {50, 10});
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Minus})
        QTest::keyClick(&list, key);
    list.collapseItem(tree.item(u"A"_s));
    EXPECT_EQ(rowsOf(list), u"A [a] b B C c d");
    EXPECT_TRUE(delegate.takeLog().isEmpty());
    {
        const SourceItem below(u"below"_s, tree.item(u"a"_s));
        list.reloadData();
        EXPECT_EQ(rowsOf(list), u"A [a] b B C c d") << "only the heading itself is opened";
    }
    list.reloadData();

    delegate.keepsGroupsOpen = false;
    const QPoint triangle = list.frameOfOutlineCellAtRow(0).center().toPoint();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, triangle);
    EXPECT_EQ(rowsOf(list), u"A B C c d");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, triangle);
    EXPECT_EQ(rowsOf(list), u"A a b B C c d");
    EXPECT_EQ(delegate.takeLog().join(u'|'),
              u"ItemWillCollapse A|ItemDidCollapse A|SelectionDidChange|ItemWillExpand A|"
              "ItemDidExpand A");
}

TEST_F(PXSourceListTest, ArrowKeysStepOverHeadings)
{
    const std::tuple<int, Qt::Key, int> cases[] = {{1, Qt::Key_Down, 2}, {2, Qt::Key_Down, 5},
                                                   {5, Qt::Key_Up, 2},   {6, Qt::Key_Up, 5},
                                                   {1, Qt::Key_Up, 1},   {6, Qt::Key_Down, 6}};
    for (const auto &[from, key, to] : cases) {
        SCOPED_TRACE(testing::Message() << from << " " << key);
        list.selectRowIndexes({from}, false);
        delegate.log.clear();
        QTest::keyClick(&list, key);
        EXPECT_EQ(list.selectedRowIndexes(), RowIndexes{to});
        // Past either end the row that does not exist is asked for all the same, without effect.
        EXPECT_EQ(delegate.log.size(), from == to ? 0 : 1);
    }
    list.setAllowsMultipleSelection(true);
    list.selectRowIndexes({2}, false);
    QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(rowsOf(list), u"A a [b] B C [c] d");
    QTest::keyClick(&list, Qt::Key_Up); // with two rows it is the outline view's key
    EXPECT_EQ(rowsOf(list), u"A a [b] B C c d");
}

TEST_F(PXSourceListTest, DeleteKeysAreOnlyTold)
{
    const auto press = [this](Qt::Key key, const QString &text) {
        QTest::sendKeyEvent(QTest::Press, &list, key, text, {});
    };
    press(Qt::Key_Backspace, u"\b"_s);
    EXPECT_TRUE(delegate.log.isEmpty()); // nothing is selected
    list.setAllowsMultipleSelection(true);
    list.selectRowIndexes({1, 5}, false);
    delegate.log.clear();
    press(Qt::Key_Backspace, u"\b"_s);
    press(Qt::Key_Delete, u"\x7F"_s);
    press(Qt::Key_unknown, u"\x7F"_s);
    press(Qt::Key_Backspace, {}); // no character
    EXPECT_EQ(delegate.takeLog(), QStringList(3, u"DeleteKeyPressedOnRows"_s));
    EXPECT_EQ(delegate.deletedRows, (RowIndexes{1, 5}));
    EXPECT_EQ(list.numberOfRows(), 7);
}

TEST_F(PXSourceListTest, ReloadMovesTheSelectionOffHeadings)
{
    const std::tuple<const char *, const char *, bool, const char *, const char *, const char *>
        cases[] = {
            {"nothing selected", "A(a)", true, "", "", "A a"},
            {"nothing selected, must be", "A() B(a b)", false, "", "", "A B [a] b"},
            {"nothing to select", "A() B()", false, "", "", "A B"},
            {"entry stays", "A(a b)", true, "b", "", "A a [b]"},
            {"entry above", "A(a b) B(c)", true, "b", "b", "A a B [c] b"},
            {"entry above, over headings", "A(a b) B()", false, "a", "a", "A [b] B a"},
            {"nothing but headings above", "A() B(a)", true, "a", "a", "A B a"},
            {"row 0, entries only below", "A(a b)", true, "a", "a A", "a A b"},
        };
    for (const auto &[title, tree, allowsEmpty, selected, names, afterwards] : cases) {
        SCOPED_TRACE(title);
        SourceTree moving(QString::fromLatin1(tree));
        PXSourceList moved;
        moved.setDelegate(&delegate);
        moved.setDataSource(&moving);
        moved.setAllowsEmptySelection(allowsEmpty);
        moved.selectRowIndexes({moved.rowForItem(moving.item(QString::fromLatin1(selected)))},
                               false);
        // To the end of the top level, one after the other.
        for (const QByteArray &name : QByteArray(names).split(' ')) {
            if (QObject *item = moving.item(QString::fromLatin1(name))) {
                item->setParent(nullptr);
                item->setParent(&moving.root);
            }
        }
        moved.reloadData();
        EXPECT_EQ(rowsOf(moved), QLatin1StringView(afterwards));
    }
}

TEST_F(PXSourceListTest, AsksForTheNumberOfGroupsAfterEachOne)
{
    struct Shrinking : SourceTree
    {
        using SourceTree::SourceTree;
        int count = 3;
        int asked = 0;
        int sourceListNumberOfChildrenOfItem(PXSourceList *l, OutlineItem item) override
        {
            const int all = SourceTree::sourceListNumberOfChildrenOfItem(l, item);
            return item ? all : (++asked, std::min(all, count));
        }
        OutlineItem sourceListChild(PXSourceList *l, int index, OutlineItem item) override
        {
            if (!item && asked > 1)
                count = 1; // from the first step of the opening on
            return SourceTree::sourceListChild(l, index, item);
        }
    };
    Shrinking shrinking(u"A(a) B(b) C(c)"_s);
    PXSourceList shrunk;
    shrunk.setDelegate(&delegate);
    shrunk.setDataSource(&shrinking);
    EXPECT_EQ(rowsOf(shrunk), u"A a B C");
}

TEST_F(PXSourceListTest, SubscribesOnlyTheCurrentDelegate)
{
    SourceDelegate next;
    list.setDelegate(&next);
    click(list, 1);
    EXPECT_TRUE(delegate.log.isEmpty());
    EXPECT_EQ(next.takeLog().size(), 2);
    next.whenSelected = [] { throw 1; }; // dropped
    click(list, 2);
    list.setDelegate(nullptr);
    click(list, 1);
    EXPECT_EQ(next.takeLog().size(), 2);

    auto gone = std::make_unique<SourceDelegate>();
    auto goneTree = std::make_unique<SourceTree>(u"X(x y)"_s);
    list.setDelegate(gone.get());
    list.setDataSource(goneTree.get());
    click(list, 1);
    gone.reset();
    click(list, 2);
    QTest::keyClick(&list, Qt::Key_Up);
    goneTree.reset();
    list.viewport()->grab();
    click(list, 2);
    list.reloadData();
    EXPECT_EQ(list.numberOfRows(), 0);
    EXPECT_EQ(list.dataSource(), nullptr);

    // A list that is gone has unsubscribed its delegate from whatever it would post.
    auto other = std::make_unique<PXSourceList>();
    other->setDelegate(&delegate);
    other->setDataSource(&tree);
    other->selectRowIndexes({1}, false);
    delegate.log.clear();
    other.reset();
    EXPECT_TRUE(delegate.log.isEmpty());
}

TEST_F(PXSourceListTest, OffersTheDelegatesMenu)
{
    QMenu own, theirs;
    list.setMenu(&own);
    const QPoint onB = middleOfRow(list, 2);
    for (QMenu *menu : {static_cast<QMenu *>(nullptr), &theirs}) {
        delegate.menu = menu;
        QContextMenuEvent event(QContextMenuEvent::Mouse, onB, onB);
        EXPECT_EQ(list.menuForEvent(&event), menu ? menu : &own);
        EXPECT_EQ(delegate.askedForMenu, tree.item(u"b"_s));
    }
}

TEST_F(PXSourceListTest, SpeaksTitlesAndBadges)
{
    tree.item(u"a"_s)->badge = 12;
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&list);
    // Qt counts the header, hidden as it is, as the first child.
    EXPECT_EQ(accessible->child(2)->text(QAccessible::Name), u"a, 12");
    EXPECT_EQ(accessible->child(3)->text(QAccessible::Name), u"b");
    const auto toolTip = [this](int row) {
        const QPoint position = middleOfRow(list, row);
        QHelpEvent event(QEvent::ToolTip, position, list.viewport()->mapToGlobal(position));
        QCoreApplication::sendEvent(list.viewport(), &event);
        return QToolTip::text();
    };
    const QString longTitle = QString(60, u'x');
    tree.item(u"c"_s)->setObjectName(longTitle);
    EXPECT_EQ(toolTip(1), QString());
    EXPECT_EQ(toolTip(5), longTitle);
}

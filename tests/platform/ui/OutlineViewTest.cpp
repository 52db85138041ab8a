#include "tests/platform/ui/OutlineViewTree.h"

#include <QAbstractItemModelTester>
#include <QMenu>
#include <QScrollBar>

/// A shown view of "A(a b c) B(d) C()" with A and B open, in rows A a b c B d C.
struct OutlineViewTest : testing::Test
{
    OutlineTree tree{u"A(a b c) B(d) C()"_s};
    OutlineView view;
    QAbstractItemModelTester tester{view.model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};

    OutlineViewTest()
    {
        view.setDelegate(&tree);
        view.setDataSource(&tree);
        view.expandItem(nullptr);
        view.resize(200, 400);
        view.show();
        tree.log.clear();
    }
};

TEST_F(OutlineViewTest, MapsRowsItemsAndLevels)
{
    EXPECT_EQ(rowsOf(view), u"A a b c B d C");
    const std::tuple<const char *, int, int, bool, bool> cases[] = {
        {"A", 0, 0, true, true}, {"c", 3, 1, false, false}, {"C", 6, 0, false, false}};
    for (const auto &[name, row, level, expandable, expanded] : cases) {
        SCOPED_TRACE(name);
        QObject *item = tree.item(QString::fromLatin1(name));
        EXPECT_EQ(view.rowForItem(item), row);
        EXPECT_EQ(view.itemAtRow(row), item);
        EXPECT_EQ(view.levelForItem(item), level);
        EXPECT_EQ(view.isExpandable(item), expandable);
        EXPECT_EQ(view.isItemExpanded(item), expanded);
        EXPECT_EQ(view.rowAtPoint(view.rectOfRow(row).center()), row);
        EXPECT_EQ(view.rectOfRow(row), QRectF(0, row * 24, 200, 24));
    }
    QObject stranger;
    for (const int none : {view.levelForItem(nullptr), view.levelForItem(&stranger),
                           view.levelForRow(-1), view.levelForRow(7), view.rowForItem(&stranger),
                           view.rowAtPoint({5, 399}), view.rowAtPoint({-5, 5})})
        EXPECT_EQ(none, -1);
    EXPECT_TRUE(view.rectOfRow(7).isNull());
}

TEST_F(OutlineViewTest, ReloadKeepsWhatIsStillThere)
{
    view.selectRowIndexes({2}, false);
    view.collapseItem(tree.item(u"B"_s));
    tree.log.clear();

    delete tree.item(u"a"_s);
    EXPECT_EQ(rowsOf(view), u"A ? [b] c B C"); // an item that is gone leaves an empty row behind
    view.viewport()->grab();
    makeItem(u"e"_s, tree.item(u"A"_s));
    view.reloadData();
    EXPECT_EQ(rowsOf(view), u"A [b] c e B C");
    EXPECT_TRUE(tree.takeLog().isEmpty());

    delete tree.item(u"b"_s);
    view.reloadData();
    EXPECT_EQ(rowsOf(view), u"A c e B C");
    EXPECT_EQ(tree.takeLog(), QStringList{u"changed"_s});

    // Answers that are no new item are left out.
    tree.whenAsked = [this] { view.reloadData(); };
    view.reloadData();
    EXPECT_EQ(rowsOf(view), u"A c e B C");
    view.setDataSource(nullptr);
    EXPECT_EQ(view.numberOfRows(), 0);
}

TEST_F(OutlineViewTest, SelectsByCode)
{
    const std::tuple<bool, RowIndexes, bool, const char *, bool> cases[] = {
        {false, {2}, false, "A a [b] c B d C", true},
        {false, {1}, false, "A [a] b c B d C", false},
        {false, {-1, 7}, false, "A [a] b c B d C", false},
        {false, {-1, 5, 7}, false, "A a b c B [d] C", true},
        {false, {3}, true, "A a b [c] B d C", true},
        {false, {}, true, "A [a] b c B d C", false},
        {false, {}, false, "A a b c B d C", true},
        {true, {3, 5}, true, "A [a] b [c] B [d] C", true},
        {true, {3, 5}, false, "A a b [c] B [d] C", true},
    };
    for (const auto &[multiple, rows, extend, after, told] : cases) {
        SCOPED_TRACE(after);
        view.setAllowsMultipleSelection(multiple);
        view.selectRowIndexes({1}, false);
        tree.refused = tree.root.children(); // code is not asked
        tree.log.clear();
        view.selectRowIndexes(rows, extend);
        EXPECT_EQ(rowsOf(view), QLatin1StringView(after));
        EXPECT_EQ(tree.takeLog().count(u"changed"_s), told ? 1 : 0);
    }
}

TEST_F(OutlineViewTest, AsksAboutClicks)
{
    tree.refused = {tree.item(u"A"_s), tree.item(u"B"_s)};
    click(view, 1);
    EXPECT_EQ(rowsOf(view), u"A [a] b c B d C");
    EXPECT_EQ(tree.takeLog(), (QStringList{u"changing"_s, u"changed"_s}));
    click(view, 1);
    click(view, 4); // refused: the selection stays
    QTest::mouseClick(view.viewport(), Qt::RightButton, {}, middleOfRow(view, 2));
    EXPECT_EQ(rowsOf(view), u"A [a] b c B d C");
    EXPECT_TRUE(tree.takeLog().isEmpty());

    tree.proposal = [](const RowIndexes &) { return RowIndexes{3}; };
    click(view, 2);
    EXPECT_EQ(rowsOf(view), u"A a b [c] B d C");
    tree.proposal = nullptr;
    view.setAllowsEmptySelection(false);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {50, 390});
    EXPECT_EQ(view.selectedRow(), 3);
    view.setAllowsEmptySelection(true);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {50, 390});
    EXPECT_EQ(view.selectedRow(), 3) << "the ground below the rows stands for nothing";

    view.setAllowsMultipleSelection(true);
    click(view, 1);
    click(view, 5, Qt::ShiftModifier);
    EXPECT_EQ(rowsOf(view), u"A [a] [b] [c] B [d] C");
    click(view, 2, Qt::ControlModifier);
    EXPECT_EQ(rowsOf(view), u"A [a] b [c] B [d] C");
    click(view, 3);
    EXPECT_EQ(rowsOf(view), u"A a b [c] B d C");
}

TEST_F(OutlineViewTest, TellsOnceAfterAMouseDrag)
{
    QWidget *viewport = view.viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, middleOfRow(view, 1));
    for (const int row : {1, 2, 3})
        dragTo(view, row);
    EXPECT_EQ(rowsOf(view), u"A a b [c] B d C");
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, middleOfRow(view, 3));
    // One question about dragging, and then the rows are only selected.
    EXPECT_EQ(tree.takeLog().join(u'|'), u"changing|write a|changing|changing|changed");
    // A release that never comes must not swallow the change.
    QTest::mousePress(viewport, Qt::LeftButton, {}, middleOfRow(view, 1));
    view.hide();
    EXPECT_EQ(tree.takeLog().join(u'|'), u"changing|changed");
}

TEST_F(OutlineViewTest, MovesByKeys)
{
    tree.refused = {tree.item(u"A"_s), tree.item(u"B"_s), tree.item(u"C"_s)};
    const std::tuple<int, Qt::Key, int> cases[] = {
        {-1, Qt::Key_Down, 1},  {-1, Qt::Key_Up, 5},      {3, Qt::Key_Down, 5}, {5, Qt::Key_Up, 3},
        {5, Qt::Key_Down, 5},   {1, Qt::Key_Up, 1},       {3, Qt::Key_Home, 1}, {3, Qt::Key_End, 5},
        {3, Qt::Key_PageUp, 1}, {1, Qt::Key_PageDown, 5}, {3, Qt::Key_Left, 3}, {2, Qt::Key_D, 5},
    };
    for (const auto &[from, key, to] : cases) {
        SCOPED_TRACE(testing::Message() << from << " " << key);
        view.deselectAll();
        view.selectRowIndexes({from}, false);
        QTest::keyClick(&view, key);
        EXPECT_EQ(view.selectedRow(), to);
    }
    view.selectRowIndexes({2}, false);
    view.deselectAll();
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(view.selectedRow(), 3) << "from the row that was left";
    view.setAllowsMultipleSelection(true);
    view.selectRowIndexes({2}, false);
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(rowsOf(view), u"A a [b] [c] B [d] C");
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(rowsOf(view), u"A [a] [b] [c] B [d] C");
}

TEST_F(OutlineViewTest, OpensAndCloses)
{
    QObject *a = tree.item(u"A"_s);
    view.selectRowIndexes({2}, false);
    tree.log.clear();
    const QPoint triangle = view.frameOfOutlineCellAtRow(0).center().toPoint();
    EXPECT_TRUE(view.frameOfOutlineCellAtRow(1).isEmpty());

    tree.refused = {a};
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, triangle);
    view.collapseItem(a);
    EXPECT_TRUE(tree.takeLog().isEmpty());
    tree.refused.clear();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, triangle);
    EXPECT_EQ(rowsOf(view), u"A B d C"); // what is not shown is not selected
    EXPECT_EQ(tree.takeLog(), (QStringList{u"will close A"_s, u"closed A"_s, u"changed"_s}));

    view.selectRowIndexes({0}, false);
    const std::pair<Qt::Key, const char *> cases[] = {
        {Qt::Key_Right, "[A] a b c B d C"},   {Qt::Key_Right, "A [a] b c B d C"},
        {Qt::Key_Left, "[A] a b c B d C"},    {Qt::Key_Left, "[A] B d C"},
        {Qt::Key_Plus, "[A] a b c B d C"},    {Qt::Key_Minus, "[A] B d C"},
        {Qt::Key_Asterisk, "[A] a b c B d C"}};
    for (const auto &[key, rows] : cases) {
        QTest::keyClick(&view, key);
        EXPECT_EQ(rowsOf(view), QLatin1StringView(rows)) << key;
    }
    // An open item that is closed by a delegate which throws the tree away meanwhile.
    tree.whenAsked = [&] { delete a; };
    view.reloadData();
    EXPECT_EQ(view.rowForItem(tree.item(u"d"_s)), 1);
}

TEST_F(OutlineViewTest, EditsUnlessRefused)
{
    QObject *item = tree.item(u"b"_s);
    tree.refused = {item};
    view.editRow(2);
    EXPECT_EQ(view.editedRow(), -1);
    tree.refused.clear();
    click(view, 2);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, middleOfRow(view, 2));
    EXPECT_EQ(view.editedRow(), 2);
    auto *editor = view.findChild<QLineEdit *>();
    ASSERT_TRUE(editor);
    QTest::keyClicks(editor, u"new"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(rowsOf(view), u"A a [new] c B d C");
    EXPECT_EQ(view.editedRow(), -1);
}

TEST_F(OutlineViewTest, AssistiveTechnologyIsAskedToo)
{
    tree.refused = {tree.item(u"A"_s)};
    QItemSelectionModel *selection = view.selectionModel();
    const QModelIndex top = view.model()->index(0, 0);
    selection->select(top, QItemSelectionModel::ClearAndSelect);
    EXPECT_EQ(view.selectedRow(), -1);
    selection->select(view.model()->index(1, 0, top), QItemSelectionModel::ClearAndSelect);
    EXPECT_EQ(rowsOf(view), u"A a [b] c B d C");
    EXPECT_EQ(tree.takeLog(), QStringList{u"changed"_s});
    view.setAllowsEmptySelection(false);
    selection->clear();
    EXPECT_EQ(view.selectedRow(), 2);
    QAccessibleInterface *row = QAccessible::queryAccessibleInterface(&view)->child(3);
    EXPECT_EQ(row->text(QAccessible::Name), u"b");
}

TEST_F(OutlineViewTest, SubviewsScrollWithTheirRows)
{
    for (int i = 0; i < 100; ++i)
        makeItem(u"x"_s, tree.item(u"A"_s));
    view.reloadData();
    QWidget subview(view.viewport());
    for (const int row : {60, 3, 100, 99}) { // far jumps and near ones
        subview.setGeometry(view.rectOfRow(row).toRect());
        view.scrollRowToVisible(row);
        EXPECT_EQ(subview.geometry(), view.rectOfRow(row).toRect());
        EXPECT_TRUE(view.viewport()->rect().contains(subview.geometry()));
    }
    EXPECT_GT(view.verticalScrollBar()->value(), 1000);
}

TEST_F(OutlineViewTest, PopsUpTheMenu)
{
    QMenu menu;
    menu.addAction(u"x"_s);
    for (const bool hasMenu : {true, false}) {
        view.setMenu(hasMenu ? &menu : nullptr);
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, {5, 5});
        QCoreApplication::sendEvent(view.viewport(), &event);
        EXPECT_EQ(menu.isVisible(), hasMenu);
        EXPECT_EQ(event.isAccepted(), hasMenu);
        menu.close();
    }
}

#include "tests/platform/ui/OutlineViewTree.h"

#include <QDrag>
#include <QDragEnterEvent>

/// Rows A a b B c, of 24 pixels each.
struct OutlineViewDragTest : testing::Test
{
    OutlineTree tree{u"A(a b) B(c)"_s};
    OutlineView view;
    QMimeData data;

    OutlineViewDragTest()
    {
        view.setDelegate(&tree);
        view.setDataSource(&tree);
        view.expandItem(nullptr);
        view.resize(200, 300);
        view.show();
        view.registerForDraggedTypes({u"text/plain"_s});
        tree.log.clear();
    }
    bool drop(qreal y)
    {
        QDragEnterEvent enter({50, int(y)}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(view.viewport(), &enter);
        if (!enter.isAccepted())
            return false;
        view.viewport()->grab(); // with the mark of where it would go
        QDropEvent event({50, y}, Qt::CopyAction, &data, Qt::LeftButton, {});
        tree.log.clear();
        QCoreApplication::sendEvent(view.viewport(), &event);
        return event.isAccepted();
    }
};

TEST_F(OutlineViewDragTest, ProposesPlacesBetweenAndOnRows)
{
    data.setText(u"dropped"_s);
    tree.dropAction = Qt::CopyAction;
    const std::pair<qreal, const char *> cases[] = {
        {1, "root 0"}, {12, "A -1"}, {22, "A 0"},    {25, "A 0"},  {36, "a -1"},
        {46, "A 1"},   {71, "A 2"},  {73, "root 1"}, {118, "B 1"}, {250, "root 2"},
    };
    for (const auto &[y, place] : cases) {
        EXPECT_TRUE(drop(y));
        const QString where = QString::fromLatin1(place);
        EXPECT_EQ(tree.log, (QStringList{u"validate "_s + where, u"accept "_s + where})) << y;
    }
}

TEST_F(OutlineViewDragTest, TakesNothingElse)
{
    data.setText(u"dropped"_s);
    EXPECT_FALSE(drop(12)); // the data source says no
    EXPECT_EQ(tree.takeLog(), QStringList{u"validate A -1"_s});
    tree.dropAction = Qt::MoveAction; // which the source of the drag does not offer
    EXPECT_FALSE(drop(12));
    tree.dropAction = Qt::CopyAction;
    data.clear();
    data.setData(u"image/png"_s, "x");
    tree.log.clear();
    EXPECT_FALSE(drop(12));
    EXPECT_TRUE(tree.log.isEmpty());
}

TEST_F(OutlineViewDragTest, DragsTheSelectedRowsTogether)
{
    tree.pasteboard = "written";
    view.setAllowsMultipleSelection(true);
    view.selectRowIndexes({1, 4}, false);
    tree.log.clear();
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, middleOfRow(view, 4));
    EXPECT_EQ(view.numberOfSelectedRows(), 2); // until the release, which now does not come
    QTimer::singleShot(0, &view, [] { QDrag::cancel(); });
    dragTo(view, 2);
    EXPECT_EQ(tree.takeLog(), (QStringList{u"write a c"_s, u"begin 2"_s, u"ended 0"_s}));
    EXPECT_EQ(rowsOf(view), u"A [a] b B [c]");
}

#include "tests/sourcelist/SourceListTree.h"

#include "sourcelist/SourceListGeometry.h"

#include <QPainter>

#include <malloc.h>

namespace {

/// The tree with badge colours and icons for selected rows.
class ColouredTree : public BadgedTree
{
    Q_OBJECT
    Q_INTERFACES(PXSourceListDataSource)

public:
    using BadgedTree::BadgedTree;
    QColor fill, text;
    QImage selectedIcon;

    QColor sourceListBadgeBackgroundColorForItem(PXSourceList *, OutlineItem) override
    {
        return fill;
    }
    QColor sourceListBadgeTextColorForItem(PXSourceList *, OutlineItem) override { return text; }
    QImage sourceListIconForItemSelected(PXSourceList *, OutlineItem) override
    {
        return selectedIcon;
    }
};

/// A list "A(a b) A(c)" beside a text field in a window, drawn at a scale.
struct SourceListDrawing : testing::TestWithParam<qreal>
{
    ColouredTree tree{u"A(a b) A(c)"_s};
    SourceDelegate delegate;
    QWidget window;
    PXSourceList &list = *new PXSourceList(&window);

    SourceListDrawing()
    {
        window.resize(200, 300);
        list.resize(200, 200);
        list.setDelegate(&delegate);
        list.setDataSource(&tree);
        list.setBackgroundColor(Qt::gray);
        list.setFocus();
        EXPECT_TRUE(activate(window));
    }

    QImage drawn()
    {
        QImage image(list.viewport()->size() * GetParam(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(GetParam());
        list.viewport()->render(&image);
        return image;
    }
    QColor at(const QImage &image, const QPointF &point) const
    {
        return image.pixelColor((point * GetParam()).toPoint());
    }
    /// What has the colour in that row, in points.
    QRectF extent(const QImage &image, int row, const QColor &color) const
    {
        return extent(image, list.rectOfRow(row), color);
    }
    QRectF extent(const QImage &image, const QRectF &rect, const QColor &color) const
    {
        QRect found;
        for (int y = qRound(rect.top() * GetParam()); y < qRound(rect.bottom() * GetParam()); ++y) {
            for (int x = qRound(rect.left() * GetParam()); x < rect.right() * GetParam(); ++x) {
                if (image.pixelColor(x, y) == color)
                    found |= QRect(x, y, 1, 1);
            }
        }
        return QRectF(QPointF(found.topLeft()) / GetParam(), QSizeF(found.size()) / GetParam());
    }
    QRectF badgeOf(int row)
    {
        return SourceListGeometry::badgeRect(list.rectOfRow(row), list.sizeOfBadgeAtRow(row));
    }
};

} // namespace

TEST_P(SourceListDrawing, BadgesHaveTheirColours)
{
    const QColor accent(10, 200, 30);
    QPalette colors = list.palette();
    colors.setColor(QPalette::Highlight, accent);
    list.setPalette(colors);
    QWidget elsewhere(&window);
    elsewhere.setFocusPolicy(Qt::StrongFocus);
    elsewhere.show();
    tree.item(u"a"_s)->badge = 88888;
    const QColor usual(152, 168, 202), own(1, 2, 3), ownText(4, 5, 6);
    tree.item(u"A"_s)->badge = 7;
    tree.fill = own;
    EXPECT_NEAR(extent(drawn(), 0, own).left(), badgeOf(0).left(), 1.5) << "headings have them too";
    enum State { Hidden, Minimised, Here, Elsewhere, Edited };
    const std::tuple<const char *, bool, State, QColor, QColor, QColor, QColor> cases[] = {
        {"selected, hidden", true, Hidden, own, ownText, Qt::white, {170, 170, 170}},
        {"selected, minimised", true, Minimised, own, ownText, Qt::white, {170, 170, 170}},
        {"selected, keyboard here", true, Here, own, ownText, Qt::white, accent},
        {"selected, elsewhere", true, Elsewhere, own, ownText, Qt::white, {153, 169, 203}},
        {"selected, edited", true, Edited, own, ownText, Qt::white, accent},
        {"not selected", false, Here, {}, {}, usual, Qt::white},
        {"with colours of its own", false, Here, own, ownText, own, ownText},
        {"with its own text alone", false, Here, {}, ownText, usual, ownText},
        {"not selected, hidden", false, Hidden, own, ownText, {180, 180, 180}, Qt::white},
        {"not selected, minimised", false, Minimised, own, ownText, {180, 180, 180}, Qt::white},
    };
    for (const auto &[title, isSelected, state, wantedFill, wantedText, fill, text] : cases) {
        SCOPED_TRACE(title);
        tree.fill = wantedFill;
        tree.text = wantedText;
        list.selectRowIndexes({isSelected ? 1 : 2}, false);
        (state == Elsewhere ? &elsewhere : &list)->setFocus();
        window.setWindowState(state == Minimised ? Qt::WindowMinimized : Qt::WindowNoState);
        window.setVisible(state != Hidden);
        if (state == Edited)
            list.editRow(1);
        EXPECT_EQ(list.editedRow(), state == Edited ? 1 : -1);
        const QImage image = drawn();
        const QRectF badge = badgeOf(1);
        EXPECT_EQ(at(image, {badge.left() + 5, badge.center().y()}), fill);
        const QRectF inside = badge.adjusted(9, 2, -9, -2);
        EXPECT_FALSE(extent(image, inside, text).isEmpty());
        // Round ends leave the corners to the row.
        EXPECT_NE(at(image, badge.topLeft() + QPointF(1, 1)), fill);
        const QRectF filled = extent(image, 1, fill);
        if (fill != QColor(Qt::white)) { // as the title of a selected row is
            EXPECT_NEAR(filled.left(), badge.left(), 1.5);
            EXPECT_NEAR(filled.height(), 17, 0.6) << "no edge between two pixels";
        }
    }
}

TEST_P(SourceListDrawing, IconsAreDrawnAtTheirSizeOrCutDownToTheLists)
{
    for (const auto &[size, drawnSize] : {std::pair(12, 12), {16, 16}, {32, 16}, {64, 16}}) {
        SCOPED_TRACE(size);
        tree.item(u"b"_s)->icon = filled(size, size, Qt::red);
        const QRectF red = extent(drawn(), 2, Qt::red);
        const QRectF room =
            SourceListGeometry::iconRect(list.frameOfCellAtColumn(0, 2), list.iconSize());
        EXPECT_NEAR(red.width(), drawnSize, 1 / GetParam());
        EXPECT_NEAR(red.height(), drawnSize, 1 / GetParam());
        EXPECT_NEAR(red.center().x(), room.center().x(), 1);
        EXPECT_NEAR(red.center().y(), room.center().y(), 1);
    }
    list.selectRowIndexes({2}, false);
    EXPECT_FALSE(extent(drawn(), 2, Qt::red).isEmpty()) << "the usual one stands in";
    tree.selectedIcon = filled(16, 16, Qt::green);
    EXPECT_FALSE(extent(drawn(), 2, Qt::green).isEmpty());
    EXPECT_TRUE(extent(drawn(), 2, Qt::red).isEmpty());
    tree.item(u"A"_s)->icon = filled(16, 16, Qt::red);
    EXPECT_TRUE(extent(drawn(), 0, Qt::red).isEmpty()) << "headings have none";
}

TEST_P(SourceListDrawing, KeepsNoIconsThatWereReplaced)
{
    const auto memoryAfterIcons = [this](int count) {
        for (int i = 0; i < count; ++i) {
            tree.item(u"b"_s)->icon = filled(16, 16, QColor(i % 256, 0, 0));
            drawn();
        }
        return ::mallinfo2().uordblks;
    };
    const auto before = memoryAfterIcons(10);
    EXPECT_LT(memoryAfterIcons(1500), before + 500'000);
}

TEST_P(SourceListDrawing, SelectionShowsInEveryState)
{
    list.selectRowIndexes({1}, false);
    const QPointF inside = list.rectOfRow(1).center() + QPointF(60, 0);
    EXPECT_EQ(at(drawn(), inside), list.palette().color(QPalette::Active, QPalette::Highlight));
    list.clearFocus();
    EXPECT_LT(at(drawn(), inside).lightness(), 150) << "white text reads on it";
    EXPECT_EQ(at(drawn(), inside - QPointF(0, 28)), QColor(Qt::gray)) << "the heading above";
}

TEST_P(SourceListDrawing, MirrorsEverythingFromRightToLeft)
{
    tree.item(u"a"_s)->badge = 7;
    tree.item(u"a"_s)->icon = filled(16, 16, Qt::red);
    tree.fill = QColor(1, 2, 3);
    list.setIndentationPerLevel(10);
    delegate.keepsGroupsOpen = false;
    list.reloadData();
    struct Place
    {
        QRectF icon, badge, text, triangle, heading;
    };
    const auto look = [this] {
        const QImage image = drawn();
        return Place{extent(image, 1, Qt::red), extent(image, 1, tree.fill),
                     list.frameOfCellAtColumn(0, 1), list.frameOfOutlineCellAtRow(0),
                     list.frameOfCellAtColumn(0, 0)};
    };
    const Place straight = look();
    list.setLayoutDirection(Qt::RightToLeft);
    const Place mirrored = look();
    EXPECT_FALSE(straight.triangle.isEmpty());
    for (const auto part :
         {&Place::icon, &Place::badge, &Place::text, &Place::triangle, &Place::heading}) {
        const QRectF there = mirrored.*part;
        EXPECT_NEAR((straight.*part).left(), 200 - there.right(), 1.01);
        EXPECT_NEAR((straight.*part).width(), there.width(), 1.01);
        EXPECT_EQ((straight.*part).top(), there.top());
    }
    EXPECT_NEAR(mirrored.icon.left() - mirrored.text.right(), 3, 1.01);
    list.selectRowIndexes({1}, false);
    QTest::keyClick(&list, Qt::Key_Right); // to the heading, which is no row to select
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, mirrored.triangle.center().toPoint());
    EXPECT_EQ(rowsOf(list), u"A A c");
}

INSTANTIATE_TEST_SUITE_P(Scales, SourceListDrawing, testing::Values(1.0, 1.5, 2.0),
                         [](const auto &info) {
                             return "At" + std::to_string(int(info.param * 100)) + "Percent";
                         });

#include "SourceListDrawingTest.moc"

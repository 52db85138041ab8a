#include "tests/sourcelist/SourceListTree.h"

#include "sourcelist/SourceListGeometry.h"

#include <QFontMetricsF>

using namespace SourceListGeometry;

TEST(SourceListGeometry, PlacesTexts)
{
    const QRectF rect(0, 56, 200, 28);
    const QRectF base(14, 56, 186, 28);
    const std::tuple<const char *, Row, QRectF> cases[] = {
        {"entry", {rect, base, 1, 10, false, false, {16, 16}, 0, 18}, {28, 61, 162, 18}},
        {"entry with icon", {rect, base, 1, 10, false, true, {16, 16}, 0, 18}, {50, 61, 140, 18}},
        {"entry with badge",
         {rect, base, 2, 10, false, false, {16, 16}, 22, 17},
         {38, 61.5, 130, 17}},
        {"heading", {rect, base, 0, 10, false, true, {16, 16}, 22, 14}, {14, 63, 186, 14}},
        {"open heading", {rect, base, 0, 10, true, true, {16, 16}, 22, 14}, {7, 63, 193, 14}},
    };
    for (const auto &[title, row, frame] : cases)
        EXPECT_EQ(textCellFrame(row), frame) << title;
}

TEST(SourceListGeometry, PlacesIconsBadgesAndTriangles)
{
    EXPECT_EQ(badgeSize(2), QSizeF(22, 17));
    EXPECT_EQ(badgeSize(40), QSizeF(60, 17));
    EXPECT_EQ(badgeRect({0, 28, 200, 28}, {22, 17}), QRectF(168, 33.5, 22, 17));
    const QRectF icon = iconRect({50, 61, 140, 18}, {16, 16});
    EXPECT_EQ(icon, QRectF(31, 62, 16, 16));
    EXPECT_EQ(imageRect(icon, {32, 32}), icon);
    EXPECT_EQ(imageRect(icon, {12, 12}), QRectF(33, 64, 12, 12));
    EXPECT_EQ(imageRect(icon, {12, 40}), QRectF(33, 50, 12, 40)); // small one way is small
    const QRectF triangle(0, 28, 14, 28);
    EXPECT_EQ(outlineCellFrame(triangle, 0, 10, false), triangle);
    EXPECT_EQ(outlineCellFrame(triangle, 2, 10, false), QRectF(20, 28, 14, 28));
    EXPECT_EQ(outlineCellFrame(triangle, 0, 10, true), QRectF());
    EXPECT_EQ(fittedIconSize({32, 28}, 28), QSizeF(32, 28));
    EXPECT_EQ(fittedIconSize({32, 56}, 28), QSizeF(16, 28));
}

TEST(SourceListGeometry, GoesByTheHeightOfEveryKindOfCell)
{
    struct : SourceDelegate
    {
        OutlineViewCell cell;
        OutlineViewCell sourceListDataCellForItem(List *, OutlineItem) override { return cell; }
    } delegate;
    SourceTree tree(u"A(a)"_s);
    PXSourceList list;
    list.resize(200, 200);
    list.setDelegate(&delegate);
    list.setDataSource(&tree);
    const auto expectHeight = [&](OutlineViewCell::Kind kind, qreal height) {
        delegate.cell.kind = kind;
        EXPECT_EQ(list.frameOfCellAtColumn(0, 1), QRectF(18, 42 - height / 2, 172, height));
    };
    delegate.cell.image = QImage(9, 12, QImage::Format_RGB32);
    expectHeight(OutlineViewCell::Image, 12);
    expectHeight(OutlineViewCell::Custom, 28);
    delegate.cell.heightInBounds = [](const QRectF &bounds) { return bounds.height() / 2; };
    expectHeight(OutlineViewCell::Custom, 14);
}

TEST(SourceListGeometry, FeedsTheListsOwnMeasures)
{
    BadgedTree tree(u"A(a b) B()"_s);
    SourceDelegate delegate;
    PXSourceList list;
    list.resize(200, 200);
    list.setIndentationPerLevel(10);
    list.setDelegate(&delegate);
    list.setDataSource(&tree);
    tree.item(u"a"_s)->badge = 7;
    tree.item(u"b"_s)->badge = -2;
    tree.item(u"b"_s)->icon = QImage(8, 8, QImage::Format_RGB32);

    EXPECT_EQ(list.sizeOfBadgeAtRow(0), QSizeF(0, 0));
    EXPECT_EQ(list.sizeOfBadgeAtRow(9), QSizeF(0, 0));
    QFont bold = list.font();
    bold.setBold(true);
    bold.setPixelSize(12);
    const qreal width = QFontMetricsF(bold).horizontalAdvance(u"-2"_s) + 20;
    EXPECT_EQ(list.sizeOfBadgeAtRow(2).width(), std::max(22.0, width));
    const QRectF a = list.frameOfCellAtColumn(0, 1);
    EXPECT_EQ(a.x(), 28);
    EXPECT_EQ(a.right(), 200 - list.sizeOfBadgeAtRow(1).width() - 10);
    EXPECT_EQ(list.frameOfCellAtColumn(0, 2).x(), 50);
    EXPECT_EQ(list.frameOfCellAtColumn(0, 0).x(), 7);
    EXPECT_TRUE(list.frameOfOutlineCellAtRow(0).isNull());
    for (const auto &[column, row] : {std::pair(1, 1), std::pair(0, -1), std::pair(0, 4)})
        EXPECT_TRUE(list.frameOfCellAtColumn(column, row).isNull());

    list.setIconSize({64, 56});
    EXPECT_EQ(list.iconSize(), QSizeF(32, 28));
    EXPECT_EQ(list.frameOfCellAtColumn(0, 2).x(), 66);
}

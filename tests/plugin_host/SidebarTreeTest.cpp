#include "plugin_host/SidebarTree.h"

TEST(SourceListItem, DescribesItself)
{
    const auto item = SourceListItem::itemWithTitle(u"Status"_s, u"3"_s);
    EXPECT_TRUE(item->description().startsWith(u"<SourceListItem: 0x"_s));
    EXPECT_TRUE(item->description().endsWith(u" | identifier = 3 | title = Status >"_s));
    EXPECT_FALSE(item->hasIcon() || item->hasBadge());
    item->iconSelected = QImage(1, 1, QImage::Format_ARGB32);
    EXPECT_FALSE(item->hasIcon()) << "only the plain icon counts";
    EXPECT_FALSE(item->hasChildren());
}

TEST(SidebarTree, FindsOrGrowsHeadings)
{
    SidebarTree tree;
    SidebarTree::Headings headings;
    SourceListItem *cleaning = tree.getParentItemNamed(u"Cleaning"_s, headings);
    SourceListItem *untitled = tree.getParentItemNamed(QString(), headings);
    EXPECT_EQ(cleaning->identifier, u"item.0"_s);
    EXPECT_EQ(untitled->identifier, u"item.1"_s);
    EXPECT_EQ(tree.getParentItemNamed(u"Cleaning"_s, headings), cleaning);
    EXPECT_EQ(tree.getParentItemNamed(QString(), headings), untitled);
    EXPECT_EQ(tree.getParentItemNamed(u"*hidden*"_s, headings), nullptr);
    EXPECT_EQ(headings.size(), 2);
}

/// Headings written as "Title: row row".
struct RowNumbers : testing::Test
{
    void make(const QStringList &description)
    {
        for (const QString &line : description) {
            headings << item(line.section(u':', 0, 0));
            for (const QString &row : line.section(u':', 1).split(u' ', Qt::SkipEmptyParts))
                headings.last()->children << item(row);
        }
    }
    SourceListItem *item(const QString &title)
    {
        return items.emplace_back(SourceListItem::itemWithTitle(title, {})).get();
    }
    int row(const QString &heading, const QString &title) const
    {
        return static_cast<int>(SidebarTree::rowNumber(headings, heading, title).value_or(-1));
    }

    SidebarTree::Headings headings;
    std::vector<std::unique_ptr<SourceListItem>> items;
};

TEST_F(RowNumbers, FollowFromTheTree)
{
    make({u"A: a b"_s, u"Empty:"_s, u"C: c"_s});
    EXPECT_EQ(row(u"A"_s, u"a"_s), 1);
    EXPECT_EQ(row(u"A"_s, u"b"_s), 2);
    EXPECT_EQ(row(u"C"_s, u"c"_s), 5);
    EXPECT_EQ(row(u"Empty"_s, u"c"_s), -1);
    EXPECT_EQ(row(u"A"_s, u"c"_s), -1);
}

TEST_F(RowNumbers, OfASecondHeadingOfTheSameTitleAreShifted)
{
    make({u"A: a b"_s, u"A: c"_s});
    EXPECT_EQ(row(u"A"_s, u"c"_s), 6) << "4 and the two rows of the first, counted again";
    EXPECT_EQ(SidebarTree::findItem(headings, u"A"_s, u"c"_s), nullptr)
        << "only the first heading of a title is searched for an item";
    EXPECT_EQ(SidebarTree::findItem(headings, u"A"_s, u"b"_s)->title, u"b"_s);
}

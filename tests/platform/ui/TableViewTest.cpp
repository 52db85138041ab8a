#include "platform/ui/TableView.h"

#include <QPainter>

namespace {

struct Source : QObject, TableViewDataSource
{
    quint64 numberOfRowsInTableView(QObject *table) override
    {
        asked = table;
        return rows;
    }
    QVariant tableViewObjectValueForTableColumn(QObject *, int column, int row) override
    {
        ++calls;
        if (quint64(row) >= rows)
            throw std::out_of_range("no such row");
        if (column == 0)
            return u"row %1"_s.arg(row);
        AttributedString icon;
        icon.attachment = filled(20, 20, Qt::red);
        icon.attachment.setDevicePixelRatio(2);
        icon.alignment = alignment;
        return QVariant::fromValue(icon);
    }

    quint64 rows = 3;
    int calls = 0;
    Qt::Alignment alignment = Qt::AlignRight;
    QObject *asked = nullptr;
};

} // namespace

TEST(TableView, ShowsItsSourceAndOutlivesIt)
{
    TableView table;
    table.reloadData();
    EXPECT_EQ(table.model()->rowCount(), 0);
    auto source = std::make_unique<Source>();
    table.setDataSource(source.get(), {u"Name"_s, u"Icon"_s});
    EXPECT_EQ(source->asked, &table);
    EXPECT_EQ(table.model()->rowCount(), 3);
    EXPECT_EQ(table.model()->index(2, 0).data(), u"row 2"_s);
    EXPECT_EQ(table.model()->headerData(1, Qt::Horizontal), u"Icon"_s);
    int useful = 0;
    source->calls = 0;
    for (int role = 0; role < Qt::UserRole + 10; ++role)
        useful += table.model()->index(0, 1).data(role).isValid();
    EXPECT_EQ(useful, 2) << "the picture and its alignment";
    EXPECT_EQ(source->calls, 5) << "only what a cell can have is worth asking for";
    table.resize(300, 200);
    table.show();
    source->rows = 1;
    EXPECT_FALSE(table.model()->index(2, 0).data().isValid()) << "fewer rows than it was told of";
    table.grab();
    source->rows = 5;
    table.reloadData();
    EXPECT_EQ(table.model()->rowCount(), 5);
    source->rows = ~quint64(0);
    table.reloadData();
    EXPECT_EQ(table.model()->rowCount(), TableViewModel::mostRows);
    source.reset();
    EXPECT_EQ(table.model()->rowCount(), 0);
    EXPECT_EQ(table.dataSource(), nullptr);
    table.reloadData();
    table.grab();
}

TEST(TableView, PutsAnAttachmentWhereItIsAligned)
{
    Source source;
    source.rows = 1;
    TableView table;
    table.resize(400, 100);
    table.setDataSource(&source, {u"a"_s, u"b"_s});
    table.setColumnWidth(0, 100);
    table.show();
    for (const auto &[alignment, place] :
         {std::pair{Qt::AlignLeft, 0}, {Qt::AlignHCenter, 1}, {Qt::AlignRight, 2}}) {
        source.alignment = alignment;
        table.reloadData();
        const QRect cell = table.visualRect(table.model()->index(0, 1));
        const QImage picture = table.viewport()->grab().toImage();
        QList<int> red;
        for (int x = 0; x < cell.width(); ++x) {
            if (picture.pixelColor(cell.left() + x, cell.center().y()) == QColor(Qt::red))
                red << x;
        }
        ASSERT_EQ(red.size(), 10) << "points, not pixels";
        const int fromRight = cell.width() - 1 - red.last();
        const int nearest = red[0] < 10 ? 0 : fromRight < 10 ? 2 : 1;
        EXPECT_EQ(nearest, place) << red[0] << " " << fromRight;
        if (place == 1) {
            EXPECT_NEAR(red[0], fromRight, 2);
        }
    }
}

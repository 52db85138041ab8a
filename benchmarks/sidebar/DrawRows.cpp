#include "benchmarks/Table.h"
#include "platform/ui/Application.h"
#include "sourcelist/PXSourceList.h"

#include <QPainter>
#include <QStandardItemModel>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr double allowed = 1.5; // times the plain tree
constexpr int headings = 10;
constexpr int entriesEach = 19;
constexpr int rowHeight = 28;
constexpr int rounds = 101;

QImage icon()
{
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setBrush(Qt::blue);
    painter.drawEllipse(4, 4, 40, 40);
    painter.end();
    image.setDevicePixelRatio(3);
    return image;
}

QString title(int row)
{
    return u"Entry number %1"_s.arg(row);
}

/// A badge on every second entry.
class Rows : public QObject, public PXSourceListDataSource, public PXSourceListDelegate
{
    Q_OBJECT
    Q_INTERFACES(PXSourceListDataSource PXSourceListDelegate)

public:
    Rows()
    {
        for (int heading = 0; heading < headings; ++heading) {
            auto *top = new QObject(&m_root);
            top->setObjectName(title(heading));
            for (int entry = 0; entry < entriesEach; ++entry)
                (new QObject(top))->setObjectName(title(entry));
        }
    }
    int sourceListNumberOfChildrenOfItem(PXSourceList *, OutlineItem item) override
    {
        return int((item ? item : &m_root)->children().size());
    }
    OutlineItem sourceListChild(PXSourceList *, int index, OutlineItem item) override
    {
        return (item ? item : &m_root)->children().value(index);
    }
    QVariant sourceListObjectValueForItem(PXSourceList *, OutlineItem item) override
    {
        return item->objectName();
    }
    bool sourceListIsItemExpandable(PXSourceList *, OutlineItem item) override
    {
        return item->parent() == &m_root;
    }
    bool sourceListItemHasIcon(PXSourceList *, OutlineItem) override { return true; }
    QImage sourceListIconForItem(PXSourceList *, OutlineItem) override { return m_icon; }
    bool sourceListItemHasBadge(PXSourceList *, OutlineItem item) override
    {
        return item->objectName().back() == u'2';
    }
    qint64 sourceListBadgeValueForItem(PXSourceList *, OutlineItem) override { return 12; }
    bool sourceListIsGroupAlwaysExpanded(PXSourceList *, OutlineItem) override { return true; }

private:
    QObject m_root;
    QImage m_icon = icon();
};

double milliseconds(QAbstractScrollArea &view)
{
    QImage image(view.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    const auto start = std::chrono::steady_clock::now();
    view.viewport()->render(&image, {}, {}, QWidget::DrawWindowBackground);
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - start;
    return taken.count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

/// Prints what drawing all rows takes, in turns with the plain tree, as medians. Ends with 1 when
/// the budget is missed.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Application application(argc, argv);
    constexpr int count = headings * (1 + entriesEach);

    Rows rows;
    PXSourceList list;
    list.setRowHeight(rowHeight);
    list.setDelegate(&rows);
    list.setDataSource(&rows);

    QStandardItemModel model;
    const QIcon decoration(QPixmap::fromImage(icon()));
    for (int heading = 0; heading < headings; ++heading) {
        auto *top = new QStandardItem(title(heading));
        top->setSizeHint({100, rowHeight});
        for (int entry = 0; entry < entriesEach; ++entry) {
            auto *item = new QStandardItem(decoration, title(entry));
            item->setSizeHint({100, rowHeight});
            top->appendRow(item);
        }
        model.appendRow(top);
    }
    QTreeView plain;
    plain.setHeaderHidden(true);
    plain.setModel(&model);
    plain.expandAll();

    for (QTreeView *view : {static_cast<QTreeView *>(&list), &plain}) {
        view->resize(216, count * rowHeight + 4);
        view->show();
    }
    if (list.numberOfRows() != count || list.rectOfRow(count - 1).isEmpty()) {
        std::fputs("the sidebar does not show all of its rows\n", stderr);
        return 2;
    }
    std::vector<double> ours, theirs;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(milliseconds(list));
        theirs.push_back(milliseconds(plain));
    }
    const double ratio = median(ours) / median(theirs);
    return tableRow("Drawing " + std::to_string(count) + " rows", withUnit(median(ours), "ms", 2),
                    "plain tree " + withUnit(median(theirs), "ms", 2), ratio, allowed)
        ? 0
        : 1;
}

#include "DrawRows.moc"

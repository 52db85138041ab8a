#include "platform/ui/Application.h"
#include "platform/ui/ProgressIndicator.h"
#include "tests/sourcelist/SourceListTree.h"

#include <QPainter>
#include <QTextStream>

namespace {

constexpr int columnWidth = 216;
constexpr int margin = 16;
constexpr int captionHeight = 28;
constexpr qreal scale = 2;
const QColor sidebar(168, 214, 242);

QImage icon(int size)
{
    QImage image = filled(size, size, Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    painter.setPen(QPen(QColor(0x2f, 0x6e, 0xa5), 1.4));
    painter.setBrush(QColor(255, 255, 255, 160));
    painter.drawEllipse(QRectF(1.7, 1.7, 12.6, 12.6));
    painter.drawPolyline(QPolygonF({{4.5, 8.2}, {7, 10.8}, {11.5, 5.6}}));
    return image;
}

/// Everything that a row can be.
class EveryRow : public BadgedTree
{
public:
    EveryRow()
        : BadgedTree(QString())
    {
        auto *cleaning = new SourceItem(u"Cleaning"_s, &root);
        add(cleaning, u"No badge"_s, -1, 16);
        for (const qint64 badge : {0, 7, 12345, -2})
            add(cleaning, u"Badge %1"_s.arg(badge), badge, 16);
        add(cleaning, u"A title that is much too long for its row"_s, 12345, 16);
        auto *system = new SourceItem(u"System"_s, &root);
        for (const int size : {12, 16, 32, 64})
            add(system, u"Icon of %1 points"_s.arg(size), -1, size);
        add(system, u"No icon"_s, -1, 0);
        add(system, u"No icon, badge"_s, 7, 0);
        auto *again = new SourceItem(u"Cleaning"_s, &root);
        again->badge = 3;
        add(again, u"Below the second of a name"_s, -1, 16);
    }

private:
    static void add(QObject *heading, const QString &title, qint64 badge, int iconSize)
    {
        auto *item = new SourceItem(title, heading);
        item->badge = badge;
        if (iconSize > 0)
            item->icon = icon(iconSize);
    }
};

struct Column
{
    QString caption;
    int width = columnWidth;
    bool hasKeyboard = false;
    bool isHidden = false;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    int widthBefore = 0; ///< of a sidebar that was resized while its rows were busy
};

void spin(PXSourceList &list, int row)
{
    const QRectF cell = list.frameOfCellAtColumn(0, row);
    auto *spinner = new ProgressIndicator(list.viewport());
    spinner->setGeometry(
        QRectF(cell.right() - 20, cell.top(), cell.height(), cell.height()).toRect());
    spinner->show();
}

QPixmap drawn(const Column &column)
{
    EveryRow rows;
    SourceDelegate delegate;
    QWidget window;
    auto *list = new PXSourceList(&window);
    auto *elsewhere = new QWidget(&window);
    elsewhere->setFocusPolicy(Qt::StrongFocus);
    list->setFrameShape(QFrame::NoFrame);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setLayoutDirection(column.direction);
    list->setBackgroundColor(sidebar);
    list->setDelegate(&delegate);
    list->setDataSource(&rows);
    const int height = list->numberOfRows() * int(list->rowHeight());
    list->resize(column.widthBefore > 0 ? column.widthBefore : column.width, height);
    window.resize(column.width, height);
    if (!activate(window))
        QTextStream(stderr) << "the keyboard does not come to the window\n";
    list->selectRowIndexes({3}, false);
    if (column.widthBefore > 0) {
        spin(*list, 12);
        list->resize(column.width, height);
        QCoreApplication::processEvents();
        spin(*list, 12);
    }
    (column.hasKeyboard ? static_cast<QWidget *>(list) : elsewhere)->setFocus();
    window.setVisible(!column.isHidden);
    QPixmap picture(QSize(column.width, height) * scale);
    picture.setDevicePixelRatio(scale);
    list->render(&picture);
    return picture;
}

} // namespace

/// sidebar_picture FILE - draws a sidebar with every kind of row, in every state, side by side.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Application application(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: sidebar_picture FILE\n";
        return 2;
    }
    const Column columns[] = {
        {.caption = u"Keyboard in the sidebar"_s, .hasKeyboard = true},
        {.caption = u"Keyboard elsewhere"_s},
        {.caption = u"Window hidden"_s, .hasKeyboard = true, .isHidden = true},
        {.caption = u"Right to left"_s, .hasKeyboard = true, .direction = Qt::RightToLeft},
        {.caption = u"Made wider while busy"_s, .width = 260, .widthBefore = columnWidth},
    };
    QList<QPixmap> pictures;
    qreal right = margin;
    for (const Column &column : columns) {
        pictures << drawn(column);
        right += column.width + margin;
    }
    const qreal height = pictures[0].deviceIndependentSize().height() + captionHeight + margin;
    QPixmap sheet((QSizeF(right, height) * scale).toSize());
    sheet.setDevicePixelRatio(scale);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    qreal x = margin;
    for (int i = 0; i < pictures.size(); ++i) {
        painter.drawText(QRectF(x, 0, columns[i].width, captionHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, columns[i].caption);
        painter.drawPixmap(QPointF(x, captionHeight), pictures[i]);
        x += columns[i].width + margin;
    }
    painter.end();
    if (sheet.save(QString::fromLocal8Bit(argv[1])))
        return 0;
    QTextStream(stderr) << "the picture could not be saved at " << argv[1] << '\n';
    return 1;
}

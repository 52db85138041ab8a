#include <QApplication>
#include <QMainWindow>
#include <QStandardItemModel>
#include <QStyleFactory>
#include <QTreeView>

using namespace Qt::StringLiterals;

/// The least program with a window and a tree: what Solvane's start is measured against.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));

    QStandardItemModel model;
    for (const char *heading : {"Cleaning", "Optimization", "Security", "System", "Online"}) {
        auto *item = new QStandardItem(QString::fromLatin1(heading));
        item->appendRow(new QStandardItem(u"Plugin"_s));
        model.appendRow(item);
    }
    QMainWindow window;
    auto *tree = new QTreeView;
    tree->setHeaderHidden(true);
    tree->setModel(&model);
    tree->expandAll();
    window.setCentralWidget(tree);
    window.resize(980, 680);
    window.show();
    return QApplication::exec();
}

#include "platform/ui/TableView.h"

#include "platform/ui/AttributedStringDelegate.h"

#include <QHeaderView>

TableView::TableView(QWidget *parent)
    : QTableView(parent)
    , m_model(this)
{
    setModel(&m_model);
    setItemDelegate(new AttributedStringDelegate(this));
    setSelectionBehavior(SelectRows);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->hide();
}

void TableView::setDataSource(TableViewDataSource *source, const QStringList &titles)
{
    m_model.setDataSource(source, titles);
    horizontalHeader()->setVisible(!titles.isEmpty());
}

void TableView::reloadData()
{
    m_model.reloadData();
}

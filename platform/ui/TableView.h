#pragma once

#include "platform/ui/TableViewModel.h"

#include <QTableView>

/// A table that shows what a TableViewDataSource has, row by row. Main thread.
class TableView : public QTableView
{
    Q_OBJECT

public:
    explicit TableView(QWidget *parent = nullptr);

    /// As TableViewModel::setDataSource(). Null for none.
    void setDataSource(TableViewDataSource *source, const QStringList &titles = {});
    TableViewDataSource *dataSource() const { return m_model.dataSource(); }

public Q_SLOTS:
    /// Shows what the source has now; the selection is gone afterwards.
    void reloadData();

private:
    TableViewModel m_model;
};

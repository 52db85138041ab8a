#pragma once

#include <QtPlugin>
#include <QVariant>

/// What a table shows: one row after the other, a value for each column. Asked on the table's
/// thread.
class TableViewDataSource
{
public:
    virtual ~TableViewDataSource() = default;
    virtual quint64 numberOfRowsInTableView(QObject *table) = 0;
    virtual QVariant tableViewObjectValueForTableColumn(QObject *table, int column, int row) = 0;
};

#define TableViewDataSource_iid "com.solvane.TableViewDataSource/6"
Q_DECLARE_INTERFACE(TableViewDataSource, TableViewDataSource_iid)

#pragma once

#include "platform/ui/AttributedString.h"
#include "platform/ui/TableViewDataSource.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QPointer>
#include <QStringList>

#include <algorithm>

/// A TableViewDataSource as a model for Qt's item views. Nothing but this header is needed. Main
/// thread.
///
/// The number of rows is asked for in reloadData(), the values whenever a row is drawn; a source
/// that throws has no value there. A value is text, or whatever Qt shows; of an AttributedString
/// come the text, the attachment as the decoration, the colour, the underline and the alignment
/// (set an AttributedStringDelegate on the view, so that a lone attachment is aligned too).
class TableViewModel : public QAbstractTableModel
{
public:
    /// No more are shown: Qt's tables hold a record of every row.
    static constexpr int mostRows = 5'000'000;

    /// @param table what the source is told to be asked by; may be null.
    explicit TableViewModel(QObject *table, QObject *parent = nullptr)
        : QAbstractTableModel(parent)
        , m_table(table)
    { }

    /// Not owned. A source that is a QObject may go at any time, the table is then empty; another
    /// one must outlive this, or be replaced.
    /// @param titles of the columns, all of them; without titles there is one, without a title.
    void setDataSource(TableViewDataSource *source, const QStringList &titles = {})
    {
        if (m_object)
            m_object->disconnect(this);
        m_source = source;
        m_object = dynamic_cast<QObject *>(source);
        m_isObject = !m_object.isNull();
        if (m_object)
            connect(m_object, &QObject::destroyed, this, [this] { reloadData(); });
        beginResetModel();
        m_titles = titles;
        countRows();
        endResetModel();
    }

    TableViewDataSource *dataSource() const { return m_isObject && !m_object ? nullptr : m_source; }

    /// Asks for everything anew.
    void reloadData()
    {
        beginResetModel();
        countRows();
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rows;
    }
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : std::max<int>(1, int(m_titles.size()));
    }

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override
    {
        TableViewDataSource *source = dataSource();
        if (!source || !index.isValid() || !isServed(role))
            return {};
        QVariant value;
        try {
            value =
                source->tableViewObjectValueForTableColumn(m_table, index.column(), index.row());
        } catch (...) {
            return {}; // the source has fewer rows than when it was asked
        }
        if (value.metaType() == QMetaType::fromType<AttributedString>())
            return part(value.value<AttributedString>(), role);
        return role == Qt::DisplayRole ? value : QVariant();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
            return {};
        return m_titles.value(section);
    }

private:
    void countRows()
    {
        m_rows = 0;
        TableViewDataSource *source = dataSource();
        try {
            const quint64 rows = source ? source->numberOfRowsInTableView(m_table) : 0;
            m_rows = int(std::min<quint64>(rows, mostRows));
        } catch (...) { // without rows, as said above
        }
    }

    static bool isServed(int role)
    {
        return role == Qt::DisplayRole || role == Qt::DecorationRole || role == Qt::ForegroundRole
            || role == Qt::TextAlignmentRole || role == Qt::FontRole;
    }

    static QVariant part(const AttributedString &string, int role)
    {
        switch (role) {
        case Qt::DisplayRole:
            return string.text.isEmpty() ? QVariant() : string.text;
        case Qt::DecorationRole:
            return string.attachment.isNull() ? QVariant() : string.attachment;
        case Qt::ForegroundRole:
            return string.color.isValid() ? string.color : QVariant();
        case Qt::TextAlignmentRole:
            return int(string.alignment | Qt::AlignVCenter);
        case Qt::FontRole:
            if (string.underlined) {
                QFont font; // only what is set here counts; the rest is the view's
                font.setUnderline(true);
                return font;
            }
            return {};
        default:
            return {};
        }
    }

    QPointer<QObject> m_table;
    TableViewDataSource *m_source = nullptr;
    QPointer<QObject> m_object; ///< the source, if it is a QObject
    bool m_isObject = false;
    QStringList m_titles;
    int m_rows = 0;
};

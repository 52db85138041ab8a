#pragma once

#include "helpers/HelperProtocols.h"
#include "platform/foundation/StringArray.h"

#include <QObject>

/// An ordered list of texts, kept in a file or a dictionary, and shown in a table.
///
/// A null text is no entry: it is never added, and equal to none. Texts that are no Unicode, as the
/// paths of files whose names are no UTF-8 are, can be held but not saved to a file. One thread at
/// a time.
class mndStringList : public QObject, public mndStringListProtocol
{
    Q_OBJECT
    Q_INTERFACES(mndStringListProtocol TableViewDataSource)

public:
    /// No list kept by a person comes near. One that would make a larger file is not saved, and
    /// larger files are as good as unreadable: what was saved can be loaded.
    static constexpr qsizetype largestFile = 128 * 1024 * 1024;

    Q_INVOKABLE mndStringList() = default;

    // mndStringListProtocol
    Q_INVOKABLE quint64 addString(const QString &string) override;
    Q_INVOKABLE void insert(const QString &string) override;
    Q_INVOKABLE quint64 indexOfString(const QString &string) override;
    Q_INVOKABLE QString stringAtIndex(quint64 index) override;
    Q_INVOKABLE quint64 count() override;
    Q_INVOKABLE void clear() override;
    Q_INVOKABLE void removeString(const QString &string) override;
    Q_INVOKABLE void removeStringAtIndex(int index) override;
    Q_INVOKABLE bool saveToFile(const QString &path) override;
    Q_INVOKABLE bool loadFromFile(const QString &path) override;
    Q_INVOKABLE void loadFromDic(const Dictionary &dictionary, const QString &key) override;
    Q_INVOKABLE void saveToDic(Dictionary dictionary, const QString &key) override;
    Q_INVOKABLE bool isBundleType(const QString &path) override;
    Q_INVOKABLE bool isSameOrPartOfBundle(const QString &entry, const QString &path) override;
    Q_INVOKABLE bool isWhitelisted(const QString &path) override;

    // TableViewDataSource
    Q_INVOKABLE quint64 numberOfRowsInTableView(QObject *table) override;
    /// Throws std::out_of_range, as stringAtIndex() does.
    Q_INVOKABLE QVariant tableViewObjectValueForTableColumn(QObject *table, int column,
                                                            int row) override;

private:
    StringArray m_Strings;
};

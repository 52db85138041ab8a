#pragma once

#include <QMetaType>
#include <QStringList>
#include <QVariant>

#include <memory>

/// A handle on one mutable array of strings: copies see each other's changes. Not synchronised.
class StringArray
{
public:
    StringArray()
        : m_strings(std::make_shared<QStringList>())
    { }

    QStringList &strings() { return *m_strings; }
    const QStringList &strings() const { return *m_strings; }

    /// Two handles are equal when they are handles on the same array.
    friend bool operator==(const StringArray &, const StringArray &) = default;

private:
    std::shared_ptr<QStringList> m_strings;
};

Q_DECLARE_METATYPE(StringArray)

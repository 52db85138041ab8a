#pragma once

#include <QMetaType>
#include <QString>

/// The written name of a message: "onViewShow", "tbPressed:", "stringResource:def:".
///
/// An object answers a selector with a slot or Q_INVOKABLE method named after the first keyword
/// (after the first two joined, where the first names only the sender, as in
/// "sourceList:itemHasIcon:"), with as many arguments as the name has colons.
class Selector
{
public:
    Selector() = default;
    explicit Selector(QString name)
        : m_name(std::move(name))
    { }

    /// The written form, colons included.
    const QString &name() const { return m_name; }
    bool isEmpty() const { return m_name.isEmpty(); }
    qsizetype argumentCount() const { return m_name.count(u':'); }

    friend bool operator==(const Selector &a, const Selector &b) { return a.m_name == b.m_name; }

private:
    QString m_name;
};

Q_DECLARE_METATYPE(Selector)

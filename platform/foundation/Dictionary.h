#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

/// A handle on one mutable, string-keyed map, shared between a plugin and the host.
///
/// Copies of the handle see each other's changes. A default-made handle is absent: it reads as
/// empty and drops what is written to it. Not synchronised: use one dictionary from one thread at
/// a time.
class Dictionary
{
public:
    Dictionary() = default;

    /// A new, empty dictionary.
    static Dictionary make()
    {
        Dictionary made;
        made.m_map = std::make_shared<QMap<QString, QVariant>>();
        return made;
    }

    bool isAbsent() const { return !m_map; }
    qsizetype count() const { return m_map ? m_map->size() : 0; }
    QStringList keys() const { return m_map ? m_map->keys() : QStringList(); }
    bool contains(const QString &key) const { return m_map && m_map->contains(key); }

    /// The value under the key, or an invalid QVariant.
    QVariant value(const QString &key) const { return m_map ? m_map->value(key) : QVariant(); }

    /// The value under the key as T; a default-made T when it is missing or of another kind.
    template <typename T>
    T value(const QString &key) const
    {
        return value(key).template value<T>();
    }

    /// The text under the key; null when it is missing or no text.
    QString string(const QString &key) const { return value<QString>(key); }

    /// Stores the value. An invalid QVariant removes the key.
    void setValue(const QString &key, const QVariant &value)
    {
        if (!m_map)
            return;
        if (value.isValid())
            m_map->insert(key, value);
        else
            m_map->remove(key);
    }

    /// Two handles are equal when they are handles on the same map.
    friend bool operator==(const Dictionary &a, const Dictionary &b) { return a.m_map == b.m_map; }

private:
    std::shared_ptr<QMap<QString, QVariant>> m_map;
};

Q_DECLARE_METATYPE(Dictionary)

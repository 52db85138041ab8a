#pragma once

#include <QByteArray>
#include <QList>

inline QByteArray bigEndian(quint64 value, int size)
{
    QByteArray bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes.append(char(value >> (8 * i)));
    return bytes;
}

/// References to so many objects, from this one on.
inline QByteArray references(int first, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += bigEndian(quint64(first) + quint64(i), 2);
    return bytes;
}

/// A binary property list of these objects, the first being the root; references are two bytes.
inline QByteArray binary(const QList<QByteArray> &objects)
{
    QByteArray data = "bplist00";
    QByteArray offsets;
    for (const QByteArray &object : objects) {
        offsets += bigEndian(quint64(data.size()), 4);
        data += object;
    }
    const auto table = quint64(data.size());
    return data + offsets + QByteArray(6, '\0') + "\x04\x02" + bigEndian(quint64(objects.size()), 8)
        + bigEndian(0, 8) + bigEndian(table, 8);
}

#pragma once

#include <QRect>
#include <QString>

#include <ostream>

/// How failed comparisons show Qt's values. Part of every test source, so that all agree.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << (text.isNull() ? "(null)" : '"' + text.toStdString() + '"');
}

inline void PrintTo(const QRect &rect, std::ostream *out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

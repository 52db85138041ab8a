#pragma once

#include <QVariant>

#include <algorithm>
#include <cmath>
#include <limits>

/// What a value of a property list or of the user defaults, which somebody may have stored as a
/// text, counts as. Any thread.
namespace StoredValue {

/// A number other than 0, or a text that begins with Y, T (small or large) or a number other than
/// 0, blanks and a sign before it left aside.
inline bool truth(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return value.toBool();
    const QString text = value.toString().trimmed();
    qsizetype at = text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0;
    while (at < text.size() && text[at] == u'0')
        ++at;
    return at < text.size() && QStringView(u"YyTt123456789").contains(text[at]);
}

/// A number cut towards zero and kept within 32 bits, or the one that a text begins with, blanks
/// before it left aside. 0 for anything else.
inline int integer(const QVariant &value)
{
    double number = 0;
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString().trimmed();
        qsizetype end = text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0;
        while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
            ++end;
        number = text.first(end).toDouble();
    } else {
        number = value.toDouble();
    }
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return std::isnan(number) ? 0 : static_cast<int>(std::clamp(number, least, most));
}

} // namespace StoredValue

#include "platform/foundation/Format.h"

#include <QDateTime>

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct Placeholder
{
    QStringView written;
    char16_t kind; // '@', 'd' 'u' 'x' 'X' (32 bits), 'D' 'U' (64 bits), 'f', '%'
    int width = 0;
};

// Longest first where one is the beginning of another.
constexpr Placeholder placeholders[] = {
    {u"%@", u'@'},      {u"%d", u'd'},      {u"%i", u'd'},    {u"%u", u'u'},
    {u"%ld", u'D'},     {u"%lu", u'U'},     {u"%x", u'x'},    {u"%X", u'X'},
    {u"%02x", u'x', 2}, {u"%02X", u'X', 2}, {u"%1.1f", u'f'}, {u"%%", u'%'},
};

const Placeholder *placeholderAt(QStringView text)
{
    for (const Placeholder &placeholder : placeholders) {
        if (text.startsWith(placeholder.written))
            return &placeholder;
    }
    return nullptr;
}

bool isReal(const QVariant &value)
{
    const int type = value.typeId();
    return type == QMetaType::Double || type == QMetaType::Float;
}

// As the C library writes it in the "C" locale; Qt rounds ties another way.
QString written(double real, std::chars_format form, int precision)
{
    std::array<char, 512> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), real, form, precision);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

// The 64 bits of a number; nothing for text and values that are no number.
std::optional<quint64> integerBits(const QVariant &value)
{
    if (!value.isValid())
        return 0;
    if (isReal(value)) {
        const double real = std::trunc(value.toDouble());
        // Outside these bounds the conversion is undefined.
        if (real >= -9.2e18 && real <= 9.2e18)
            return static_cast<quint64>(static_cast<qint64>(real));
        return real > 0 && real < 1.8e19 ? static_cast<quint64>(real) : 0;
    }
    bool ok = false;
    const qint64 number = value.toLongLong(&ok);
    // Above the signed range toLongLong fails for text, and wraps for numbers.
    if (ok)
        return static_cast<quint64>(number);
    const quint64 large = value.toULongLong(&ok);
    return ok ? std::optional(large) : std::nullopt;
}

QString filled(const Placeholder &placeholder, const QVariant &argument)
{
    if (placeholder.kind == u'@')
        return textualDescription(argument);
    if (placeholder.kind == u'f') {
        bool ok = false;
        const double real = argument.isValid() ? argument.toDouble(&ok) : (ok = true, 0.0);
        return ok ? written(real, std::chars_format::fixed, 1) : textualDescription(argument);
    }
    const std::optional<quint64> bits = integerBits(argument);
    if (!bits)
        return textualDescription(argument);
    const auto low = static_cast<quint32>(*bits);
    switch (placeholder.kind) {
    case u'd':
        return QString::number(static_cast<qint32>(low));
    case u'u':
        return QString::number(low);
    case u'D':
        return QString::number(static_cast<qint64>(*bits));
    case u'U':
        return QString::number(*bits);
    default: {
        const QString digits = QString::number(low, 16).rightJustified(placeholder.width, u'0');
        return placeholder.kind == u'X' ? digits.toUpper() : digits;
    }
    }
}

} // namespace

QString format(const QString &format, const QVariantList &arguments)
{
    QString result;
    result.reserve(format.size() + 16 * arguments.size());
    qsizetype used = 0;
    qsizetype position = 0;
    while (position < format.size()) {
        const qsizetype percent = format.indexOf(u'%', position);
        result += QStringView(format).mid(position, percent < 0 ? -1 : percent - position);
        if (percent < 0)
            break;
        const Placeholder *placeholder = placeholderAt(QStringView(format).mid(percent));
        const QStringView asWritten = placeholder ? placeholder->written : QStringView(u"%");
        if (placeholder && placeholder->kind == u'%')
            result += u'%';
        else if (placeholder && used < arguments.size())
            result += filled(*placeholder, arguments[used++]);
        else
            result += asWritten;
        position = percent + asWritten.size();
    }
    return result;
}

QString textualDescription(const QVariant &value)
{
    if (!value.isValid())
        return u"(null)"_s;
    switch (value.typeId()) {
    case QMetaType::QString: {
        const QString text = value.toString();
        return text.isNull() ? u"(null)"_s : text;
    }
    case QMetaType::Bool:
        return value.toBool() ? u"1"_s : u"0"_s;
    case QMetaType::Double:
        return written(value.toDouble(), std::chars_format::general, 16);
    case QMetaType::Float:
        return written(value.toDouble(), std::chars_format::general, 7);
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(u"yyyy-MM-dd HH:mm:ss +0000"_s);
    case QMetaType::QByteArray:
        return u'<' + QString::fromLatin1(value.toByteArray().toHex()) + u'>';
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        QStringList parts;
        const QVariantList list = value.toList();
        for (const QVariant &element : list)
            parts << textualDescription(element);
        return u'(' + parts.join(u", ") + u')';
    }
    case QMetaType::QVariantMap: {
        QString text = u"{"_s;
        const QVariantMap map = value.toMap();
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
            text += entry.key() + u" = "_s + textualDescription(entry.value()) + u"; "_s;
        return text + u'}';
    }
    default:
        return value.canConvert<QString>() ? value.toString()
                                           : QString::fromLatin1(value.typeName());
    }
}

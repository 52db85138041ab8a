#include "platform/foundation/SettingsValue.h"

#include "platform/foundation/Utf8.h"

#include <QDataStream>
#include <QIODevice>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// An INI file knows texts only: a tag before the text says what else it was.
constexpr QLatin1StringView booleanTag = "bool:"_L1;
constexpr QLatin1StringView integerTag = "int:"_L1;
constexpr QLatin1StringView longTag = "long:"_L1;
constexpr QLatin1StringView realTag = "real:"_L1;
constexpr QLatin1StringView textTag = "text:"_L1;
constexpr QLatin1StringView tags[] = {booleanTag, integerTag, longTag, realTag, textTag};

// QSettings' own.
constexpr QLatin1StringView bytesForm = "@ByteArray("_L1;
constexpr QLatin1StringView stringForm = "@String("_L1;
constexpr QLatin1StringView variantForm = "@Variant("_L1;
constexpr QLatin1StringView invalidForm = "@Invalid()"_L1;

bool hasTag(const QString &text)
{
    return std::any_of(std::begin(tags), std::end(tags),
                       [&](QLatin1StringView tag) { return text.startsWith(tag); });
}

QVariant untagged(const QString &text)
{
    if (!hasTag(text))
        return text;
    const QString rest = text.section(u':', 1);
    bool ok = true;
    QVariant value = rest;
    if (text.startsWith(booleanTag))
        value = rest == "true"_L1;
    else if (text.startsWith(integerTag))
        value = rest.toInt(&ok);
    else if (text.startsWith(longTag))
        value = rest.toLongLong(&ok);
    else if (text.startsWith(realTag))
        value = rest.toDouble(&ok);
    return ok ? value : text;
}

QString asText(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return booleanTag + (value.toBool() ? u"true"_s : u"false"_s);
    case QMetaType::Int:
        return integerTag + QString::number(value.toInt());
    case QMetaType::LongLong:
        return longTag + QString::number(value.toLongLong());
    case QMetaType::Double:
        return realTag + QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QByteArray:
        return bytesForm + QString::fromLatin1(value.toByteArray()) + u')';
    case QMetaType::QString: {
        const QString text = value.toString();
        if (text.startsWith(u'@'))
            return u'@' + text;
        return hasTag(text) ? textTag + text : text;
    }
    default:
        // A map is stored with all its types; a list alone would become a list of texts.
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_4_0);
        stream << QVariant(QVariantMap{{QString(), value}});
        return variantForm + QString::fromLatin1(bytes) + u')';
    }
}

QVariant fromText(const QString &text)
{
    const auto inside = [&](QLatin1StringView form) {
        return text.sliced(form.size(), text.size() - form.size() - 1);
    };
    if (!text.startsWith(u'@'))
        return untagged(text);
    if (text == invalidForm)
        return {};
    if (text.startsWith(u"@@"_s))
        return text.sliced(1);
    if (!text.endsWith(u')'))
        return text;
    if (text.startsWith(bytesForm))
        return inside(bytesForm).toLatin1();
    if (text.startsWith(stringForm))
        return inside(stringForm);
    if (text.startsWith(variantForm)) {
        QDataStream stream(inside(variantForm).toLatin1());
        stream.setVersion(QDataStream::Qt_4_0);
        QVariant value;
        stream >> value;
        const QVariantMap map = value.toMap();
        return map.size() == 1 && map.firstKey().isEmpty() ? map.first() : value;
    }
    return text;
}

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

QByteArray escaped(const QString &text)
{
    QString line;
    bool isAfterNumber = false;
    for (const QChar c : text) {
        // Half a character is no UTF-8, but may be part of a file's name.
        const bool isNumber =
            c < u' ' || c == u'\x7f' || c.isSurrogate() || (isAfterNumber && isHexDigit(c));
        if (isNumber)
            line += u"\\x"_s + QString::number(c.unicode(), 16);
        else if (c == u'"' || c == u'\\')
            line += u'\\' + QString(c);
        else
            line += c;
        isAfterNumber = isNumber;
    }
    const bool isQuoted = text.isEmpty() || text.startsWith(u' ') || text.endsWith(u' ')
        || std::any_of(text.begin(), text.end(), [](QChar c) { return u";,="_s.contains(c); });
    return (isQuoted ? u'"' + line + u'"' : line).toUtf8();
}

/// Takes apart what stands behind "=".
class EntryReader
{
public:
    explicit EntryReader(const QByteArray &entry)
        : m_text(textFromUtf8(entry))
    { }

    /// One for each comma outside of quotes, and one more.
    QStringList read()
    {
        while (m_at < m_text.size())
            take(m_text[m_at++]);
        endPart();
        return m_parts;
    }

private:
    void take(QChar c)
    {
        if (c == u'\\' && m_at < m_text.size()) {
            takeEscape(m_text[m_at++]);
        } else if (c == u'"') {
            m_isQuoted = !m_isQuoted;
            keep();
        } else if (c == u',' && !m_isQuoted) {
            endPart();
        } else if (const bool isBlank = !m_isQuoted && (c == u' ' || c == u'\t');
                   !isBlank || m_isThere) {
            m_part += c;
            if (!isBlank)
                keep();
        }
    }
    void takeEscape(QChar c)
    {
        constexpr QStringView names = u"abfnrtv\"?'\\";
        constexpr QStringView characters = u"\a\b\f\n\r\t\v\"?'\\";
        if (const qsizetype which = names.indexOf(c); which >= 0)
            m_part += characters[which];
        else if (c == u'x')
            takeNumber(16);
        else if (c >= u'0' && c <= u'7')
            takeNumber(8, c.digitValue());
        else if (c == u'\r' || c == u'\n') // the line goes on
            m_at += m_at < m_text.size() && m_text[m_at] != c
                && (m_text[m_at] == u'\r' || m_text[m_at] == u'\n');
        keep();
    }
    void takeNumber(int base, int number = 0)
    {
        for (; m_at < m_text.size() && isHexDigit(m_text[m_at]); ++m_at) {
            const int digit = QString(m_text[m_at]).toInt(nullptr, 16);
            if (digit >= base)
                break;
            number = static_cast<char16_t>(number * base + digit);
        }
        m_part += QChar(static_cast<char16_t>(number));
    }
    void keep()
    {
        m_kept = m_part.size();
        m_isThere = true;
    }
    void endPart()
    {
        // Blanks around it are only kept in quotes.
        m_parts << (m_kept > 0 ? m_part.first(m_kept) : u""_s);
        m_part.clear();
        m_kept = 0;
        m_isThere = false;
    }

    const QString m_text;
    qsizetype m_at = 0;
    QStringList m_parts;
    QString m_part;
    qsizetype m_kept = 0; ///< so much of the part is more than blanks at its end
    bool m_isThere = false;
    bool m_isQuoted = false;
};

} // namespace

namespace SettingsValue {

QByteArray encoded(const QVariant &value)
{
    return escaped(asText(value));
}

QVariant decoded(const QByteArray &entry)
{
    const QStringList parts = EntryReader(entry).read();
    return parts.size() == 1 ? fromText(parts.first()) : QVariant(parts);
}

QByteArray closed(const QByteArray &entry)
{
    return escaped(EntryReader(entry).read().join(u','));
}

} // namespace SettingsValue

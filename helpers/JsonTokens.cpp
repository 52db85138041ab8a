#include "helpers/JsonTokens.h"

#include <QList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Begins a string that stands for an integer, and is doubled at the beginning of a string that has
// it itself. JSON has but one spelling for it, so that those are found for certain.
constexpr char16_t mark = u'\x01';
constexpr QByteArrayView escapedMark = "\\u0001";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

class Scanner
{
public:
    Scanner(const QByteArray &text, int depthLimit)
        : m_text(text)
        , m_at(text.cbegin())
        , m_end(text.cend())
        , m_depthLeft(depthLimit)
    { }

    bool scan()
    {
        while (m_at != m_end) {
            const char c = *m_at;
            if (c == '"') {
                if (!string())
                    return false;
            } else if (isDigit(c) || c == '-' || c == '.') {
                if (!number())
                    return false;
            } else {
                if ((c == '[' || c == '{') && --m_depthLeft < 0)
                    return false;
                if (c == ']' || c == '}')
                    ++m_depthLeft;
                ++m_at;
            }
        }
        return true;
    }

    JsonTokens::Checked result() const
    {
        if (!m_hasLargeIntegers)
            return {m_text, false};
        QByteArray edited;
        qsizetype done = 0;
        for (const Insertion &insertion : m_insertions) {
            edited += QByteArrayView(m_text).sliced(done, insertion.position - done);
            edited += insertion.text;
            done = insertion.position;
        }
        return {edited + m_text.sliced(done), true};
    }

private:
    struct Insertion
    {
        qsizetype position;
        QByteArrayView text;
    };

    bool take(char c)
    {
        const bool found = m_at != m_end && *m_at == c;
        m_at += found ? 1 : 0;
        return found;
    }

    bool digits()
    {
        const char *const begin = m_at;
        m_at = std::find_if_not(begin, m_end, isDigit);
        return m_at != begin;
    }

    void insert(const char *at, QByteArrayView text)
    {
        m_insertions.append({at - m_text.cbegin(), text});
    }

    bool string()
    {
        ++m_at;
        if (QByteArrayView(m_at, m_end - m_at).startsWith(escapedMark))
            insert(m_at, escapedMark);
        while (m_at != m_end) {
            const char c = *m_at++;
            if (c == '"')
                return true;
            if (static_cast<uchar>(c) < 0x20 || (c == '\\' && !escape()))
                return false;
        }
        return false;
    }

    bool escape()
    {
        if (!take('u'))
            return m_at != m_end && QByteArrayView("\"\\/bfnrt").contains(*m_at++);
        const int unit = fourHexDigits();
        if (unit < 0 || QChar::isLowSurrogate(char32_t(unit)))
            return false;
        if (!QChar::isHighSurrogate(char32_t(unit)))
            return true;
        return take('\\') && take('u') && QChar::isLowSurrogate(char32_t(fourHexDigits()));
    }

    int fourHexDigits()
    {
        int value = 0;
        for (int count = 0; count < 4; ++count, ++m_at) {
            const char c = m_at == m_end ? '\0' : *m_at;
            if (isDigit(c))
                value = value * 16 + (c - '0');
            else if ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))
                value = value * 16 + ((c & 0x5F) - 'A' + 10);
            else
                return -1;
        }
        return value;
    }

    bool number()
    {
        const char *const begin = m_at;
        const bool negative = take('-');
        if (!take('0') && !digits())
            return false;
        const QByteArrayView integer(begin, m_at - begin);
        if (take('.') && !digits())
            return false;
        if (take('e') || take('E')) {
            if (!take('-'))
                take('+');
            if (!digits())
                return false;
        }
        if (!negative && m_at - begin == integer.size() && isLarge(integer)) {
            insert(begin, "\"\\u0001");
            insert(m_at, "\"");
            m_hasLargeIntegers = true;
            // As a string it would pass for a key.
            const char *const next = std::find_if_not(
                m_at, m_end, [](char c) { return QByteArrayView(" \t\r\n").contains(c); });
            return next == m_end || *next != ':';
        }
        return true;
    }

    static bool isLarge(QByteArrayView integer)
    {
        // As many digits as 2^63 has, and 2^64 - 1.
        if (integer.size() < 19 || integer.size() > 20)
            return false;
        const QByteArray digits = integer.toByteArray();
        bool isSmall = false;
        bool isUnsigned = false;
        digits.toLongLong(&isSmall);
        digits.toULongLong(&isUnsigned);
        return isUnsigned && !isSmall;
    }

    const QByteArray &m_text;
    const char *m_at;
    const char *m_end;
    int m_depthLeft;
    bool m_hasLargeIntegers = false;
    QList<Insertion> m_insertions;
};

QString withoutMark(const QString &text)
{
    return text.startsWith(mark) ? text.sliced(1) : text;
}

} // namespace

namespace JsonTokens {

std::optional<Checked> checked(const QByteArray &text, int depthLimit)
{
    Scanner scanner(text, depthLimit);
    if (!scanner.scan())
        return std::nullopt;
    return scanner.result();
}

QVariant unmarked(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString: {
        const QString text = value.toString();
        const QString rest = withoutMark(text);
        if (rest.size() == text.size() || rest.startsWith(mark))
            return rest;
        return rest.toULongLong();
    }
    case QMetaType::QVariantList: {
        QVariantList list = value.toList();
        for (QVariant &element : list)
            element = unmarked(element);
        return list;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        QVariantMap result;
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
            result.insert(withoutMark(entry.key()), unmarked(entry.value()));
        return result;
    }
    default:
        return value;
    }
}

} // namespace JsonTokens

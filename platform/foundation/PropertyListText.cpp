#include "platform/foundation/PropertyListText.h"

#include "platform/foundation/OneLine.h"
#include "platform/foundation/PropertyListLimits.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestQuote = 40; // characters

bool isLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

bool isBare(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
        || u == u'_' || u == u'$' || u == u'/' || u == u':' || u == u'.' || u == u'-';
}

int digit(QChar c, int base)
{
    const char16_t u = c.unicode();
    int value = base;
    if (u >= u'0' && u <= u'9')
        value = u - u'0';
    else if (u >= u'a' && u <= u'f')
        value = u - u'a' + 10;
    else if (u >= u'A' && u <= u'F')
        value = u - u'A' + 10;
    return value < base ? value : -1;
}

/// Recursive descent; every method answers false once m_error is set.
class Parser
{
public:
    explicit Parser(QStringView text)
        : m_text(text)
    { }

    Result<QVariant> run()
    {
        QVariant root;
        if (parseRoot(root))
            return root;
        return Result<QVariant>::failure(m_error);
    }

private:
    QStringView m_text;
    qsizetype m_position = 0;
    qsizetype m_values = 0;
    QString m_error;

    bool atEnd() const { return m_position >= m_text.size(); }
    QChar current() const { return atEnd() ? QChar() : m_text[m_position]; }

    bool take(QChar wanted)
    {
        if (atEnd() || current() != wanted)
            return false;
        ++m_position;
        return true;
    }

    bool fail(const QString &expected) { return fail(expected, m_position); }

    bool fail(const QString &expected, qsizetype position)
    {
        qsizetype line = 1;
        for (qsizetype i = 0; i < position && i < m_text.size(); ++i) {
            const bool firstOfTwo =
                m_text[i] == u'\r' && i + 1 < m_text.size() && m_text[i + 1] == u'\n';
            if (isLineEnd(m_text[i]) && !firstOfTwo)
                ++line;
        }
        m_error = u"line %1: expected %2"_s.arg(line).arg(expected);
        return false;
    }

    bool skipBlanks()
    {
        while (!atEnd()) {
            const QStringView rest = m_text.sliced(m_position);
            if (rest.front().isSpace()) {
                ++m_position;
            } else if (rest.startsWith(u"//")) {
                while (!atEnd() && !isLineEnd(current()))
                    ++m_position;
            } else if (rest.startsWith(u"/*")) {
                const qsizetype end = rest.indexOf(u"*/", 2);
                if (end < 0)
                    return fail(u"*/ at the end of the comment"_s);
                m_position += end + 2;
            } else {
                break;
            }
        }
        return true;
    }

    bool parseRoot(QVariant &root)
    {
        QVariantMap pairs;
        if (!skipBlanks())
            return false;
        if (!atEnd() && !u"{(<"_s.contains(current())) {
            const qsizetype start = m_position;
            QString text;
            if (!parseString(text) || !skipBlanks())
                return false;
            if (atEnd()) {
                root = text;
                return true;
            }
            m_position = start;
        } else if (!atEnd()) {
            if (!parseValue(root, 1) || !skipBlanks())
                return false;
            return atEnd() || fail(u"the end of the text"_s);
        }
        if (!parsePairs(pairs, 1))
            return false;
        if (!atEnd())
            return fail(u"a key"_s);
        root = pairs;
        return true;
    }

    bool count()
    {
        return ++m_values <= PropertyListLimits::values
            || fail(u"no more than %1 values"_s.arg(PropertyListLimits::values));
    }

    bool parseValue(QVariant &value, int depth)
    {
        if (!count())
            return false;
        if (depth > PropertyListLimits::depth)
            return fail(u"no more than %1 levels"_s.arg(PropertyListLimits::depth));
        if (take(u'{')) {
            QVariantMap pairs;
            if (!parsePairs(pairs, depth))
                return false;
            value = pairs;
            return take(u'}') || fail(u"a key or }"_s);
        }
        if (take(u'('))
            return parseArray(value, depth);
        if (take(u'<'))
            return parseData(value);
        QString text;
        if (!parseString(text))
            return false;
        value = text;
        return true;
    }

    /// Up to the first character that cannot begin a key.
    bool parsePairs(QVariantMap &pairs, int depth)
    {
        for (;;) {
            if (!skipBlanks())
                return false;
            if (atEnd() || !(isBare(current()) || current() == u'"' || current() == u'\''))
                return true;
            QString key;
            if (!parseString(key))
                return false;
            QVariant value = key;
            qsizetype end = m_position;
            if (!skipBlanks())
                return false;
            const bool hasValue = take(u'=');
            if (hasValue) {
                if (!skipBlanks() || !parseValue(value, depth + 1))
                    return false;
                end = m_position;
                if (!skipBlanks())
                    return false;
            } else if (!count()) { // its key is its value
                return false;
            }
            if (!take(u';')) {
                return fail(hasValue
                                ? u"; after the value of \"%1\""_s.arg(oneLine(key, longestQuote))
                                : u"= or ; after the key \"%1\""_s.arg(oneLine(key, longestQuote)),
                            end);
            }
            pairs.insert(key, value);
        }
    }

    bool parseArray(QVariant &value, int depth)
    {
        QVariantList list;
        for (;;) {
            if (!skipBlanks())
                return false;
            if (take(u')'))
                break;
            QVariant element;
            if (!parseValue(element, depth + 1) || !skipBlanks())
                return false;
            list.append(element);
            if (!take(u',') && current() != u')')
                return fail(u", or ) in the array"_s);
        }
        value = list;
        return true;
    }

    bool parseData(QVariant &value)
    {
        QByteArray digits;
        while (!atEnd() && (digit(current(), 16) >= 0 || current().isSpace())) {
            if (!current().isSpace())
                digits.append(current().toLatin1());
            ++m_position;
        }
        if (!take(u'>'))
            return fail(u"hexadecimal digits or >"_s);
        if (digits.size() % 2)
            return fail(u"an even number of hexadecimal digits"_s);
        value = QByteArray::fromHex(digits);
        return true;
    }

    bool parseString(QString &text)
    {
        if (current() == u'"' || current() == u'\'')
            return parseQuoted(text);
        const qsizetype start = m_position;
        while (!atEnd() && isBare(current()))
            ++m_position;
        text = m_text.sliced(start, m_position - start).toString();
        return !text.isEmpty() || fail(u"a key or a value"_s);
    }

    bool parseQuoted(QString &text)
    {
        const qsizetype start = m_position;
        const QChar quote = m_text[m_position++];
        text = u""_s;
        while (!atEnd()) {
            const QChar c = m_text[m_position++];
            if (c == quote)
                return true;
            if (c != u'\\')
                text += c;
            else if (!atEnd())
                text += parseEscape();
        }
        return fail(u"a closing %1 for this text"_s.arg(quote), start);
    }

    QChar parseEscape()
    {
        const QChar c = m_text[m_position++];
        switch (c.unicode()) {
        case u'a':
            return u'\a';
        case u'b':
            return u'\b';
        case u'f':
            return u'\f';
        case u'n':
            return u'\n';
        case u'r':
            return u'\r';
        case u't':
            return u'\t';
        case u'v':
            return u'\v';
        case u'U':
            return digit(current(), 16) < 0 ? c : parseCode(16, 4);
        default:
            if (digit(c, 8) < 0)
                return c;
            --m_position;
            return parseCode(8, 3);
        }
    }

    QChar parseCode(int base, int maximumDigits)
    {
        int code = 0;
        for (int i = 0; i < maximumDigits && !atEnd() && digit(current(), base) >= 0; ++i)
            code = code * base + digit(m_text[m_position++], base);
        return QChar(static_cast<char16_t>(code));
    }
};

} // namespace

Result<QVariant> PropertyListText::parse(QStringView text)
{
    return Parser(text).run();
}

#include "platform/foundation/PropertyListXmlCheck.h"

#include "platform/foundation/OneLine.h"
#include "platform/foundation/PropertyListLimits.h"

#include <QDateTime>
#include <QList>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestReason = 120; // characters

enum class Kind { Root, Dictionary, Array, Leaf, Unknown };

Kind kindOf(QStringView name)
{
    if (name == u"plist")
        return Kind::Root;
    if (name == u"dict")
        return Kind::Dictionary;
    if (name == u"array")
        return Kind::Array;
    for (const QStringView leaf :
         {u"key", u"string", u"integer", u"real", u"true", u"false", u"date", u"data"}) {
        if (name == leaf)
            return Kind::Leaf;
    }
    return Kind::Unknown;
}

bool isReadable(QStringView name, const QString &text)
{
    bool ok = true;
    if (name == u"integer") {
        // Base 0: decimal, or hexadecimal after 0x.
        text.toLongLong(&ok, 0);
        if (!ok)
            text.toULongLong(&ok, 0);
    } else if (name == u"real") {
        text.toDouble(&ok);
    } else if (name == u"date") {
        ok = QDateTime::fromString(text, Qt::ISODate).isValid();
    }
    return ok;
}

class XmlCheck
{
public:
    explicit XmlCheck(const QString &document)
        : m_reader(document)
    { }

    QString problem()
    {
        while (!m_reader.atEnd() && m_problem.isNull()) {
            const QXmlStreamReader::TokenType token = m_reader.readNext();
            if (token == QXmlStreamReader::StartElement)
                start();
            else if (token == QXmlStreamReader::EndElement)
                end();
            else if (token == QXmlStreamReader::Characters && !m_reader.isWhitespace())
                fail(u"expected an element, found text"_s);
        }
        if (m_problem.isNull() && m_reader.hasError())
            fail(m_reader.errorString());
        return m_problem;
    }

private:
    struct Level
    {
        Kind kind;
        qsizetype values = 0;
        bool hasKey = false;
    };

    QXmlStreamReader m_reader;
    QList<Level> m_levels;
    qsizetype m_values = 0;
    QString m_problem;

    void fail(const QString &what)
    {
        m_problem = u"line %1: %2"_s.arg(m_reader.lineNumber()).arg(oneLine(what, longestReason));
    }

    void start()
    {
        const QString name = m_reader.name().toString();
        const Kind kind = kindOf(name);
        if (kind == Kind::Unknown || (kind == Kind::Root && !m_levels.isEmpty()))
            return fail(u"expected a property list element, found <%1>"_s.arg(name));
        if (++m_values > PropertyListLimits::values)
            return fail(u"expected no more than %1 values"_s.arg(PropertyListLimits::values));
        if (m_levels.size() > PropertyListLimits::depth)
            return fail(u"expected no more than %1 levels"_s.arg(PropertyListLimits::depth));
        if (!fits(name))
            return;
        if (kind != Kind::Leaf) {
            m_levels.append({kind});
            return;
        }
        const QString text = m_reader.readElementText();
        if (!m_reader.hasError() && !isReadable(name, text.trimmed()))
            fail(u"expected %1, found \"%2\""_s.arg(name, text.left(40)));
    }

    bool fits(const QString &name)
    {
        const bool isKey = name == "key"_L1;
        if (m_levels.isEmpty()) {
            if (isKey)
                fail(u"expected a value, found <key>"_s);
            return m_problem.isNull();
        }
        Level &level = m_levels.last();
        ++level.values;
        if (level.kind == Kind::Root && level.values > 1)
            fail(u"expected </plist>, found <%1>"_s.arg(name));
        else if (isKey != (level.kind == Kind::Dictionary && !level.hasKey))
            fail(u"expected %1, found <%2>"_s.arg(isKey ? u"a value"_s : u"<key>"_s, name));
        if (level.kind == Kind::Dictionary)
            level.hasKey = isKey;
        return m_problem.isNull();
    }

    void end()
    {
        const Level level = m_levels.takeLast();
        if (level.hasKey)
            fail(u"expected a value for the last key"_s);
        else if (level.kind == Kind::Root && level.values == 0)
            fail(u"expected a value, found </plist>"_s);
    }
};

} // namespace

QString PropertyListXmlCheck::problem(const QString &document)
{
    return XmlCheck(document).problem();
}

#include "platform/foundation/PropertyListXml.h"

#include "platform/foundation/OneLine.h"
#include "platform/foundation/PropertyListLimits.h"
#include "platform/foundation/Utf8.h"

#include <QDateTime>

#include <expat.h>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestReason = 120; // characters
constexpr qsizetype piece = 64 * 1024;   // bytes
// Bytes of a tag, whose attributes, and of a document type, whose declarations cost far more memory
// than they take in the file. They mean nothing here.
constexpr qsizetype longestMarkup = 64 * 1024;

enum class Kind { Root, Dictionary, Array, Key, String, Integer, Real, True, False, Date, Data };

struct Element
{
    QByteArrayView name;
    Kind kind;
};

constexpr Element elements[] = {
    {"plist", Kind::Root}, {"dict", Kind::Dictionary}, {"array", Kind::Array},
    {"key", Kind::Key},    {"string", Kind::String},   {"integer", Kind::Integer},
    {"real", Kind::Real},  {"true", Kind::True},       {"false", Kind::False},
    {"date", Kind::Date},  {"data", Kind::Data},
};

bool isLeaf(Kind kind)
{
    return kind > Kind::Array;
}

/// Invalid when the text is none of that kind.
QVariant leafValue(Kind kind, const QByteArray &text)
{
    bool ok = true;
    switch (kind) {
    case Kind::True:
    case Kind::False:
        return kind == Kind::True;
    case Kind::Integer: {
        // Base 0: decimal, or hexadecimal after 0x.
        const QByteArray digits = text.trimmed();
        const qlonglong value = digits.toLongLong(&ok, 0);
        if (ok)
            return value;
        const qulonglong large = digits.toULongLong(&ok, 0);
        return ok ? QVariant(large) : QVariant();
    }
    case Kind::Real: {
        const double value = text.trimmed().toDouble(&ok);
        return ok ? QVariant(value) : QVariant();
    }
    case Kind::Date: {
        QDateTime date = QDateTime::fromString(QString::fromUtf8(text.trimmed()), Qt::ISODate);
        if (date.timeSpec() == Qt::LocalTime)
            date.setTimeSpec(Qt::UTC);
        return date.isValid() ? QVariant(date.toUTC()) : QVariant();
    }
    case Kind::Data:
        return QByteArray::fromBase64(text);
    default:
        return textFromUtf8(text);
    }
}

class XmlReader
{
public:
    XmlReader()
        : m_parser(XML_ParserCreate("UTF-8"))
    {
        Q_CHECK_PTR(m_parser);
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(
            m_parser.get(),
            [](void *self, const char *name, const char **) { of(self).start(name); },
            [](void *self, const char *) { of(self).end(); });
        XML_SetCharacterDataHandler(m_parser.get(), [](void *self, const char *text, int size) {
            of(self).characters({text, size});
        });
        XML_SetDoctypeDeclHandler(
            m_parser.get(), [](void *self, auto...) { of(self).startDoctype(); },
            [](void *self) { of(self).endDoctype(); });
        // Entities grow by their declarations, elements by those of attributes.
        XML_SetEntityDeclHandler(m_parser.get(), [](void *self, auto...) {
            of(self).fail(u"expected no declaration of an entity"_s);
        });
        XML_SetAttlistDeclHandler(m_parser.get(), [](void *self, auto...) {
            of(self).fail(u"expected no declaration of an attribute"_s);
        });
        XML_SetSkippedEntityHandler(m_parser.get(), [](void *self, const char *name, int) {
            of(self).fail(u"undefined entity %1"_s.arg(QString::fromUtf8(name)));
        });
    }

    Result<QVariant> read(const QByteArray &document)
    {
        qsizetype fed = 0;
        qsizetype pending = 0; // bytes of what has begun and not ended
        do {
            // That is looked at anew with every piece, which therefore grow with it.
            const qsizetype size = std::min(std::max(piece, pending), document.size() - fed);
            const XML_Status status =
                XML_Parse(m_parser.get(), document.constData() + fed, static_cast<int>(size),
                          fed + size == document.size());
            if (status != XML_STATUS_OK)
                fail(QString::fromLatin1(XML_ErrorString(XML_GetErrorCode(m_parser.get()))));
            fed += size;
            const qsizetype begin = XML_GetCurrentByteIndex(m_parser.get());
            pending = fed - begin;
            if (pending > longestMarkup && document[begin] == '<' && document[begin + 1] != '!'
                && document[begin + 1] != '?')
                failOverTag();
            checkDoctype();
        } while (m_problem.isNull() && fed < document.size());
        if (!m_problem.isNull())
            return Result<QVariant>::failure(m_problem);
        return m_root;
    }

private:
    struct Level
    {
        Kind kind;
        qsizetype values = 0; ///< keys too
        bool hasKey = false;
        QString key = {};
        QVariantMap pairs = {};
        QVariantList list = {};
    };

    struct ParserDeleter
    {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    std::unique_ptr<XML_ParserStruct, ParserDeleter> m_parser;
    std::vector<Level> m_levels; ///< a leaf's included
    QByteArray m_text;           ///< of a leaf, so far
    QVariant m_root;
    qsizetype m_values = 0;
    qsizetype m_doctype = -1; ///< where it begins, while inside
    QString m_problem;

    static XmlReader &of(void *self) { return *static_cast<XmlReader *>(self); }

    /// The first problem counts; the parser may call once or twice after it was told to stop.
    void fail(const QString &what)
    {
        if (!m_problem.isNull())
            return;
        m_problem = u"line %1: %2"_s.arg(XML_GetCurrentLineNumber(m_parser.get()))
                        .arg(oneLine(what, longestReason));
        XML_StopParser(m_parser.get(), XML_FALSE);
    }

    void failOverTag() { fail(u"expected a tag of no more than %1 bytes"_s.arg(longestMarkup)); }

    void startDoctype() { m_doctype = XML_GetCurrentByteIndex(m_parser.get()); }

    void endDoctype()
    {
        checkDoctype();
        m_doctype = -1;
    }

    void checkDoctype()
    {
        if (m_doctype >= 0 && XML_GetCurrentByteIndex(m_parser.get()) - m_doctype > longestMarkup)
            fail(u"expected a document type of no more than %1 bytes"_s.arg(longestMarkup));
    }

    void start(const char *name)
    {
        if (!m_problem.isNull())
            return;
        const auto element = std::find_if(std::begin(elements), std::end(elements),
                                          [&](const Element &one) { return one.name == name; });
        if (element == std::end(elements) || (element->kind == Kind::Root && !m_levels.empty()))
            return fail(
                u"expected a property list element, found <%1>"_s.arg(QString::fromUtf8(name)));
        if (XML_GetCurrentByteCount(m_parser.get()) > longestMarkup)
            return failOverTag();
        if (++m_values > PropertyListLimits::values)
            return fail(u"expected no more than %1 values"_s.arg(PropertyListLimits::values));
        if (m_levels.size() > PropertyListLimits::depth)
            return fail(u"expected no more than %1 levels"_s.arg(PropertyListLimits::depth));
        if (fits(*element))
            m_levels.push_back({element->kind});
    }

    bool fits(const Element &element)
    {
        const QString name = QString::fromLatin1(element.name);
        const bool isKey = element.kind == Kind::Key;
        if (m_levels.empty()) {
            if (isKey)
                fail(u"expected a value, found <key>"_s);
            return m_problem.isNull();
        }
        Level &level = m_levels.back();
        ++level.values;
        if (isLeaf(level.kind))
            fail(u"expected text, found <%1>"_s.arg(name));
        else if (level.kind == Kind::Root && level.values > 1)
            fail(u"expected </plist>, found <%1>"_s.arg(name));
        else if (isKey != (level.kind == Kind::Dictionary && !level.hasKey))
            fail(u"expected %1, found <%2>"_s.arg(isKey ? u"a value"_s : u"<key>"_s, name));
        return m_problem.isNull();
    }

    void characters(QByteArrayView text)
    {
        if (!m_problem.isNull())
            return;
        if (!m_levels.empty() && isLeaf(m_levels.back().kind))
            m_text.append(text.data(), text.size());
        else if (!text.trimmed().isEmpty())
            fail(u"expected an element, found text"_s);
    }

    void end()
    {
        if (!m_problem.isNull())
            return;
        Level level = std::move(m_levels.back());
        m_levels.pop_back();
        if (level.hasKey)
            return fail(u"expected a value for the last key"_s);
        if (level.kind == Kind::Root) {
            if (level.values == 0)
                fail(u"expected a value, found </plist>"_s);
            return;
        }
        QVariant value;
        if (level.kind == Kind::Dictionary) {
            value = level.pairs;
        } else if (level.kind == Kind::Array) {
            value = level.list;
        } else {
            value = leafValue(level.kind, m_text);
            if (!value.isValid()) {
                const auto name =
                    std::find_if(std::begin(elements), std::end(elements), [&](const Element &one) {
                        return one.kind == level.kind;
                    })->name;
                return fail(u"expected %1, found \"%2\""_s.arg(QString::fromLatin1(name),
                                                               QString::fromUtf8(m_text).left(40)));
            }
            m_text.truncate(0);
        }
        add(value, level.kind == Kind::Key);
    }

    void add(const QVariant &value, bool isKey)
    {
        if (m_levels.empty() || m_levels.back().kind == Kind::Root) {
            m_root = value;
            return;
        }
        Level &level = m_levels.back();
        if (isKey)
            level.key = value.toString();
        else if (level.kind == Kind::Dictionary)
            level.pairs.insert(level.key, value);
        else
            level.list.append(value);
        level.hasKey = isKey;
    }
};

} // namespace

Result<QVariant> PropertyListXml::parse(const QByteArray &document)
{
    return XmlReader().read(document);
}

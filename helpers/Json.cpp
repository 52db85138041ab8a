#include "helpers/Json.h"

#include "platform/foundation/Dictionary.h"
#include "platform/foundation/StringArray.h"
#include "platform/foundation/Utf8.h"

#include <QLocale>

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

bool isContainer(int type)
{
    return type == QMetaType::QVariantMap || type == QMetaType::QVariantHash
        || type == QMetaType::QVariantList || type == QMetaType::QStringList
        || type == qMetaTypeId<Dictionary>() || type == qMetaTypeId<StringArray>();
}

/// Builds the values while the library reads. All that it is told answers whether to go on.
class Builder
{
public:
    QVariant result() const { return m_root; }

    bool null() { return add(QVariant::fromValue(nullptr)); }
    bool boolean(bool value) { return add(value); }
    bool number_integer(std::int64_t value) { return add(qlonglong(value)); }
    bool number_unsigned(std::uint64_t value)
    {
        const auto limit = std::uint64_t(std::numeric_limits<std::int64_t>::max());
        return add(value > limit ? QVariant(qulonglong(value)) : QVariant(qlonglong(value)));
    }
    bool number_float(double value, const std::string &) { return add(value); }
    bool string(const std::string &text) { return add(textFromUtf8(text)); }
    bool binary(const std::vector<std::uint8_t> &) { return false; }
    bool start_object(std::size_t) { return open(true); }
    bool start_array(std::size_t) { return open(false); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(const std::string &key)
    {
        m_levels.back().key = textFromUtf8(key);
        return true;
    }
    bool parse_error(std::size_t, const std::string &, const nlohmann::json::exception &)
    {
        return false;
    }

private:
    struct Level
    {
        bool isObject;
        QString key = {};
        QVariantMap entries = {};
        QVariantList elements = {};
    };

    bool open(bool isObject)
    {
        if (m_levels.size() == std::size_t(Json::depthLimit))
            return false;
        m_levels.push_back({isObject});
        return true;
    }

    bool close()
    {
        Level level = std::move(m_levels.back());
        m_levels.pop_back();
        const QVariant value = level.isObject ? QVariant(level.entries) : QVariant(level.elements);
        if (!m_levels.empty())
            return add(value);
        m_root = value;
        return true;
    }

    /// False for a value that is in no container.
    bool add(const QVariant &value)
    {
        if (m_levels.empty())
            return false;
        Level &level = m_levels.back();
        if (level.isObject)
            level.entries.insert(level.key, value);
        else
            level.elements.append(value);
        return true;
    }

    std::vector<Level> m_levels;
    QVariant m_root;
};

/// Walks the values itself, in place of a second tree made of them for the library, whose writer
/// knows no limit of depth. Without recursion: threads of plugins may have small stacks.
class Writer
{
public:
    bool write(const QVariant &value)
    {
        bool ok = writeOne(value);
        while (ok && !m_levels.empty()) {
            Level &level = m_levels.back();
            if (level.next == level.values.size()) {
                m_text += level.isObject ? '}' : ']';
                m_levels.pop_back();
                continue;
            }
            if (level.next > 0)
                m_text += ',';
            if (level.isObject)
                ok = writeString(level.keys.at(level.next)) && writePlain(":");
            const QVariant next = level.values.at(level.next++); // a new level moves the others
            ok = ok && writeOne(next);
        }
        return ok;
    }

    const QByteArray &text() const { return m_text; }

private:
    struct Level
    {
        bool isObject;
        QStringList keys; ///< of an object
        QVariantList values;
        qsizetype next = 0;
    };

    bool open(const Level &level)
    {
        if (m_levels.size() == std::size_t(Json::depthLimit))
            return false;
        m_text += level.isObject ? '{' : '[';
        m_levels.push_back(level);
        return true;
    }

    bool openObject(const QVariantMap &entries)
    {
        return open({true, entries.keys(), entries.values()});
    }

    bool openArray(const QVariantList &elements) { return open({false, {}, elements}); }

    /// All of a leaf, or the beginning of a container.
    bool writeOne(const QVariant &value)
    {
        if (!isContainer(value.typeId()))
            return writeLeaf(value);
        QVariantMap entries;
        switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return openObject(value.toMap());
        case QMetaType::QVariantHash: {
            const QVariantHash hash = value.toHash();
            for (auto entry = hash.cbegin(); entry != hash.cend(); ++entry)
                entries.insert(entry.key(), entry.value());
            return openObject(entries);
        }
        case QMetaType::QVariantList:
        case QMetaType::QStringList:
            return openArray(value.toList());
        default:
            break;
        }
        if (value.typeId() == qMetaTypeId<StringArray>())
            return openArray(QVariant(value.value<StringArray>().strings()).toList());
        const auto dictionary = value.value<Dictionary>();
        if (dictionary.isAbsent())
            return writePlain("null");
        for (const QString &key : dictionary.keys())
            entries.insert(key, dictionary.value(key));
        return openObject(entries);
    }

    bool writeLeaf(const QVariant &value)
    {
        switch (value.typeId()) {
        case QMetaType::UnknownType:
        case QMetaType::Nullptr:
            return writePlain("null");
        case QMetaType::QString:
            return writeString(value.toString());
        case QMetaType::Bool:
            return writePlain(value.toBool() ? "true" : "false");
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::Short:
        case QMetaType::Int:
        case QMetaType::Long:
        case QMetaType::LongLong:
            return writePlain(QByteArray::number(value.toLongLong()));
        case QMetaType::UChar:
        case QMetaType::UShort:
        case QMetaType::UInt:
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            return writePlain(QByteArray::number(value.toULongLong()));
        case QMetaType::Float:
        case QMetaType::Double:
            return writeReal(value.toDouble());
        default:
            return false;
        }
    }

    bool writePlain(const QByteArray &text)
    {
        m_text += text;
        return true;
    }

    bool writeReal(double real)
    {
        if (!std::isfinite(real))
            return false;
        // The shortest form that reads back as the same number; "-0" would be an integer.
        return writePlain(real == 0 && std::signbit(real)
                              ? "-0.0"
                              : QByteArray::number(real, 'g', QLocale::FloatingPointShortest));
    }

    bool writeString(const QString &string)
    {
        return string.isValidUtf16()
            && writePlain(QByteArray::fromStdString(nlohmann::json(string.toStdString()).dump()));
    }

    QByteArray m_text;
    std::vector<Level> m_levels;
};

} // namespace

namespace Json {

QVariant decoded(const QString &text)
{
    // The library takes a zero character for the end.
    if (!text.isValidUtf16() || text.contains(QChar(u'\0')))
        return {};
    const QByteArray utf8 = text.toUtf8();
    Builder builder;
    return nlohmann::json::sax_parse(utf8.begin(), utf8.end(), &builder) ? builder.result()
                                                                         : QVariant();
}

QString encoded(const QVariant &object)
{
    if (!isContainer(object.typeId()))
        return {};
    if (object.typeId() == qMetaTypeId<Dictionary>() && object.value<Dictionary>().isAbsent())
        return {};
    Writer writer;
    return writer.write(object) ? QString::fromUtf8(writer.text()) : QString();
}

} // namespace Json

#include "platform/foundation/PropertyList.h"

#include "platform/foundation/PropertyListBinaryCheck.h"
#include "platform/foundation/PropertyListLimits.h"
#include "platform/foundation/PropertyListText.h"
#include "platform/foundation/PropertyListXmlCheck.h"
#include "platform/foundation/RegularFile.h"

#include <QDateTime>
#include <QStringDecoder>

#include <plist/plist.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

struct PlistDeleter
{
    void operator()(void *node) const { plist_free(node); }
};
using PlistOwner = std::unique_ptr<void, PlistDeleter>;

Result<QVariant> failure(const QString &reason)
{
    return Result<QVariant>::failure(reason);
}

/// The content of a scalar as libplist writes it, for what its getters cannot tell.
QString writtenScalar(plist_t node)
{
    char *xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(node, &xml, &length);
    const QString document = QString::fromUtf8(xml, length);
    plist_to_xml_free(xml);
    for (const QString &element : {u"<integer>"_s, u"<date>"_s}) {
        const qsizetype begin = document.indexOf(element);
        if (begin >= 0)
            return document.sliced(begin + element.size()).section(u'<', 0, 0);
    }
    return {};
}

QVariant integerValue(plist_t node)
{
    uint64_t value = 0;
    plist_get_uint_val(node, &value);
    // The getter does not tell -1 from the largest unsigned number.
    if (value > uint64_t(std::numeric_limits<qint64>::max())
        && !writtenScalar(node).startsWith(u'-'))
        return qulonglong(value);
    return qlonglong(value);
}

QVariant dateValue(plist_t node)
{
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    if (seconds == std::numeric_limits<int32_t>::min()
        || seconds == std::numeric_limits<int32_t>::max()) {
        // Farther from 2001 than the getter's 68 years. Years are written without leading zeros.
        return QDateTime::fromString(writtenScalar(node).rightJustified(20, u'0'), Qt::ISODate);
    }
    static const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    const qint64 milliseconds = microseconds / 1000;
    return epoch.addSecs(seconds).addMSecs(seconds < 0 ? -milliseconds : milliseconds);
}

QVariant convert(plist_t node);

QVariant dictionaryValue(plist_t node)
{
    QVariantMap map;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    for (;;) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        if (!value)
            break;
        map.insert(QString::fromUtf8(key), convert(value));
        std::free(key);
    }
    std::free(iterator);
    return map;
}

QVariant arrayValue(plist_t node)
{
    QVariantList list;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    for (;;) {
        plist_t value = nullptr;
        plist_array_next_item(node, iterator, &value);
        if (!value)
            break;
        list.append(convert(value));
    }
    std::free(iterator);
    return list;
}

/// Recursive: the checks before libplist have bounded the depth.
QVariant convert(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT:
        return integerValue(node);
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_KEY:
    case PLIST_STRING: {
        const char *text = plist_get_string_ptr(node, nullptr);
        return text ? QString::fromUtf8(text) : u""_s;
    }
    case PLIST_ARRAY:
        return arrayValue(node);
    case PLIST_DICT:
        return dictionaryValue(node);
    case PLIST_DATE:
        return dateValue(node);
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *bytes = plist_get_data_ptr(node, &length);
        return QByteArray(bytes, qsizetype(length));
    }
    case PLIST_UID: {
        uint64_t value = 0;
        plist_get_uid_val(node, &value);
        return qulonglong(value);
    }
    case PLIST_NONE:
        break;
    }
    return {};
}

Result<QVariant> parseWith(void (*reader)(const char *, uint32_t, plist_t *),
                           const QByteArray &data)
{
    plist_t root = nullptr;
    reader(data.constData(), static_cast<uint32_t>(data.size()), &root);
    const PlistOwner owner(root);
    if (!root)
        return failure(u"it is no property list"_s);
    return convert(root);
}

// Documents are looked at by hand: a plugin's thread may have less of a stack than regular
// expressions take.

bool isSpace(char16_t one)
{
    return one == u' ' || (one >= u'\t' && one <= u'\r');
}

/// <?xml ... encoding = "latin1", in small letters.
bool declaresLatin1(const QByteArray &beginning)
{
    if (!beginning.startsWith("<?xml"))
        return false;
    const QByteArray declaration = beginning.split('>').first();
    for (qsizetype place = 5; (place = declaration.indexOf("encoding", place)) >= 0; ++place) {
        const char before = declaration[place - 1];
        const bool isWord = std::isalnum(static_cast<uchar>(before)) || before == '_';
        QByteArrayView rest = QByteArrayView(declaration).sliced(place + 8);
        const auto skipSpace = [&rest] {
            while (!rest.isEmpty() && isSpace(static_cast<uchar>(rest.front())))
                rest = rest.sliced(1);
        };
        skipSpace();
        if (isWord || !rest.startsWith('='))
            continue;
        rest = rest.sliced(1);
        skipSpace();
        for (const QByteArrayView name : {"iso-8859-1", "latin1"}) {
            const auto isQuote = [&](qsizetype at) { return rest[at] == '"' || rest[at] == '\''; };
            if (rest.size() >= name.size() + 2 && isQuote(0) && isQuote(name.size() + 1)
                && rest.sliced(1).startsWith(name))
                return true;
        }
    }
    return false;
}

QStringConverter::Encoding encodingOf(const QByteArray &data)
{
    if (const auto marked = QStringConverter::encodingForData(data))
        return *marked;
    if (data.size() >= 2 && data[0] && !data[1])
        return QStringConverter::Utf16LE;
    if (data.size() >= 2 && !data[0] && data[1])
        return QStringConverter::Utf16BE;
    // What the document itself says counts only among encodings that such bytes can be in.
    return declaresLatin1(data.left(256).toLower()) ? QStringConverter::Latin1
                                                    : QStringConverter::Utf8;
}

/// Text too may begin with "<": then data follows, whose digits never spell an element's name.
bool looksLikeXml(QStringView text)
{
    text = text.left(256);
    while (!text.isEmpty() && isSpace(text.front().unicode()))
        text = text.sliced(1);
    if (!text.startsWith(u'<'))
        return false;
    text = text.sliced(1);
    if (text.startsWith(u'?') || text.startsWith(u'!'))
        return true;
    const auto digitsEnd =
        std::find_if(text.begin(), text.end(), [](QChar one) { return one < u'a' || one > u'f'; });
    return digitsEnd != text.end() && *digitsEnd >= u'g' && *digitsEnd <= u'z';
}

} // namespace

Result<QVariant> PropertyList::parse(const QByteArray &data)
{
    if (data.isEmpty())
        return failure(u"it is empty"_s);
    if (data.size() > PropertyListLimits::bytes)
        return failure(u"it is larger than %1 bytes"_s.arg(PropertyListLimits::bytes));
    if (data.startsWith("bplist")) {
        const QString problem = PropertyListBinaryCheck::problem(data);
        return problem.isNull() ? parseWith(plist_from_bin, data) : failure(problem);
    }
    const QStringConverter::Encoding encoding = encodingOf(data);
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    const QString text = decoder(data);
    const bool wide =
        encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE;
    if (decoder.hasError() || (wide && data.size() % 2))
        return failure(u"it is not valid %1"_s.arg(QLatin1StringView(decoder.name())));
    if (!looksLikeXml(text))
        return PropertyListText::parse(text);
    const QString problem = PropertyListXmlCheck::problem(text);
    return problem.isNull() ? parseWith(plist_from_xml, text.toUtf8()) : failure(problem);
}

Result<QVariant> PropertyList::read(const QString &path)
{
    const Result<QByteArray> data = RegularFile::read(path, PropertyListLimits::bytes);
    if (!data)
        return failure(data.error());
    const Result<QVariant> parsed = parse(data.value());
    return parsed ? parsed : failure(path + u": "_s + parsed.error());
}

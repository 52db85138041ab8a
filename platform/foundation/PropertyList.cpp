#include "platform/foundation/PropertyList.h"

#include "platform/foundation/PropertyListBinary.h"
#include "platform/foundation/PropertyListLimits.h"
#include "platform/foundation/PropertyListText.h"
#include "platform/foundation/PropertyListXml.h"
#include "platform/foundation/RegularFile.h"

#include <QStringDecoder>

#include <algorithm>
#include <cctype>

using namespace Qt::StringLiterals;

namespace {

Result<QVariant> failure(const QString &reason)
{
    return Result<QVariant>::failure(reason);
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
    if (data.startsWith("bplist"))
        return PropertyListBinary::parse(data);
    const QStringConverter::Encoding encoding = encodingOf(data);
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder(data);
    const bool wide =
        encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE;
    if (decoder.hasError() || (wide && data.size() % 2))
        return failure(u"it is not valid %1"_s.arg(QLatin1StringView(decoder.name())));
    if (!looksLikeXml(text))
        return PropertyListText::parse(text);
    const QByteArray utf8 = encoding == QStringConverter::Utf8 ? data : text.toUtf8();
    text.clear(); // it may be larger than all the rest
    return PropertyListXml::parse(utf8);
}

Result<QVariant> PropertyList::read(const QString &path)
{
    const Result<QByteArray> data = RegularFile::read(path, PropertyListLimits::bytes);
    if (!data)
        return failure(data.error());
    const Result<QVariant> parsed = parse(data.value());
    return parsed ? parsed : failure(path + u": "_s + parsed.error());
}

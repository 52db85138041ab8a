#include "helpers/Json.h"

#include "helpers/JsonTokens.h"
#include "platform/foundation/Dictionary.h"
#include "platform/foundation/StringArray.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace {

bool isContainer(int type)
{
    return type == QMetaType::QVariantMap || type == QMetaType::QVariantHash
        || type == QMetaType::QVariantList || type == QMetaType::QStringList
        || type == qMetaTypeId<Dictionary>() || type == qMetaTypeId<StringArray>();
}

/// Qt's own writer knows no unsigned integers and no failure; it is asked for texts alone.
class Writer
{
public:
    bool write(const QVariant &value)
    {
        if (isContainer(value.typeId())) {
            if (++m_depth > Json::depthLimit)
                return false;
            const bool ok = writeContainer(value);
            --m_depth;
            return ok;
        }
        return writeLeaf(value);
    }

    const QByteArray &text() const { return m_text; }

private:
    bool writeContainer(const QVariant &value)
    {
        switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return writeObject(value.toMap());
        case QMetaType::QVariantHash: {
            const QVariantHash hash = value.toHash();
            QVariantMap sorted;
            for (auto entry = hash.cbegin(); entry != hash.cend(); ++entry)
                sorted.insert(entry.key(), entry.value());
            return writeObject(sorted);
        }
        case QMetaType::QVariantList:
            return writeArray(value.toList());
        case QMetaType::QStringList:
            return writeArray(value.toStringList());
        default:
            break;
        }
        if (value.typeId() == qMetaTypeId<StringArray>())
            return writeArray(value.value<StringArray>().strings());
        const auto dictionary = value.value<Dictionary>();
        if (dictionary.isAbsent())
            return writePlain("null");
        QVariantMap entries;
        for (const QString &key : dictionary.keys())
            entries.insert(key, dictionary.value(key));
        return writeObject(entries);
    }

    bool writeObject(const QVariantMap &entries)
    {
        char separator = '{';
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
            m_text += separator;
            separator = ',';
            if (!writeString(entry.key()) || !writePlain(":") || !write(entry.value()))
                return false;
        }
        return writePlain(entries.isEmpty() ? "{}" : "}");
    }

    template <typename List>
    bool writeArray(const List &elements)
    {
        char separator = '[';
        for (const auto &element : elements) {
            m_text += separator;
            separator = ',';
            if (!write(element))
                return false;
        }
        return writePlain(elements.isEmpty() ? "[]" : "]");
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
        // The shortest form that reads back as the same number.
        return std::isfinite(real)
            && writePlain(QByteArray::number(real, 'g', QLocale::FloatingPointShortest));
    }

    bool writeString(const QString &string)
    {
        if (!string.isValidUtf16())
            return false;
        const QByteArray array = QJsonDocument(QJsonArray{string}).toJson(QJsonDocument::Compact);
        m_text += QByteArrayView(array).sliced(1).chopped(1);
        return true;
    }

    QByteArray m_text;
    int m_depth = 0;
};

} // namespace

namespace Json {

QVariant decoded(const QString &text)
{
    if (!text.isValidUtf16())
        return {};
    const auto checked = JsonTokens::checked(text.toUtf8(), depthLimit);
    if (!checked)
        return {};
    const QVariant value = QJsonDocument::fromJson(checked->text).toVariant();
    return checked->marked ? JsonTokens::unmarked(value) : value;
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

#include "helpers/mndStringList.h"

#include "platform/foundation/SystemServices.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

FileSystem &disk()
{
    return *systemServices().fileSystem;
}

/// Folders and devices stay where they are: nobody means to remove them by saving a list. Nor is a
/// link removed that leads to nothing yet.
bool mayBeReplaced(const QString &path)
{
    const auto there = disk().attributes(path);
    const bool isFile = there
        && (there->type == FileAttributes::RegularFile || there->type == FileAttributes::Link);
    return !there || (isFile && disk().exists(path));
}

/// The texts of a stored collection; what else it holds is no entry.
QStringList storedStrings(const QVariant &stored)
{
    if (stored.metaType() == QMetaType::fromType<StringArray>())
        return stored.value<StringArray>().strings();
    if (stored.typeId() == QMetaType::QStringList)
        return stored.toStringList();
    QStringList strings;
    if (stored.typeId() == QMetaType::QVariantList) {
        for (const QVariant &value : stored.toList()) {
            if (value.typeId() == QMetaType::QString)
                strings << value.toString();
        }
    }
    return strings;
}

} // namespace

quint64 mndStringList::addString(const QString &string)
{
    if (!string.isNull())
        m_Strings.strings() << string;
    return count();
}

void mndStringList::insert(const QString &string)
{
    addString(string);
}

quint64 mndStringList::indexOfString(const QString &string)
{
    const qsizetype index = string.isNull() ? -1 : m_Strings.strings().indexOf(string);
    return index < 0 ? notFound : quint64(index);
}

QString mndStringList::stringAtIndex(quint64 index)
{
    if (index >= count())
        throw std::out_of_range("mndStringList::stringAtIndex: there is no such entry");
    return m_Strings.strings().at(qsizetype(index));
}

quint64 mndStringList::count()
{
    return quint64(m_Strings.strings().size());
}

void mndStringList::clear()
{
    m_Strings.strings().clear();
}

void mndStringList::removeString(const QString &string)
{
    // A null text has no place in memory of its own: it shares the empty texts'.
    if (string.isNull())
        return;
    // It may be an entry itself, in whose place another one moves meanwhile.
    m_Strings.strings().removeIf([wanted = string](const QString &entry) {
        return entry.constData() == wanted.constData() && entry.size() == wanted.size();
    });
}

void mndStringList::removeStringAtIndex(int index)
{
    if (index < 0 || quint64(index) >= count())
        throw std::out_of_range("mndStringList::removeStringAtIndex: there is no such entry");
    m_Strings.strings().removeAt(index);
}

bool mndStringList::saveToFile(const QString &path)
{
    QStringEncoder encoder(QStringEncoder::Utf8);
    QByteArray content;
    // A list that cannot be written, or not be read again, must not cost the one that was.
    for (const QString &string : std::as_const(m_Strings).strings()) {
        // In one call: the encoder forgets an error with the next one.
        content += encoder(QString(string + u'\n'));
        if (encoder.hasError() || content.size() > largestFile)
            return false;
    }
    return mayBeReplaced(path) ? disk().replaceFile(path, content)
                               : disk().writeFile(path, content);
}

bool mndStringList::loadFromFile(const QString &path)
{
    if (!disk().exists(path))
        return false;
    clear();
    const std::optional<QByteArray> content = disk().readFile(path, largestFile);
    // A mark of the byte order is a character like any other: it may begin a name.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless
                               | QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(content.value_or(QByteArray()));
    if (!content || decoder.hasError())
        return false;
    for (const QStringView piece : QStringView(text).tokenize(u'\n'))
        addString(piece.isEmpty() ? u""_s : piece.toString());
    return true;
}

void mndStringList::loadFromDic(const Dictionary &dictionary, const QString &key)
{
    // A copy: what is stored may be this list's own array.
    const QStringList strings = storedStrings(dictionary.value(key));
    for (const QString &string : strings)
        addString(string);
}

void mndStringList::saveToDic(Dictionary dictionary, const QString &key)
{
    dictionary.setValue(key, QVariant::fromValue(m_Strings));
}

bool mndStringList::isBundleType(const QString &)
{
    return false;
}

bool mndStringList::isSameOrPartOfBundle(const QString &entry, const QString &path)
{
    if (!entry.isNull() && !path.isNull() && entry == path)
        return true;
    return isBundleType(entry);
}

bool mndStringList::isWhitelisted(const QString &path)
{
    for (const QString &entry : std::as_const(m_Strings).strings()) {
        if (isSameOrPartOfBundle(entry, path))
            return true;
    }
    return false;
}

quint64 mndStringList::numberOfRowsInTableView(QObject *)
{
    return count();
}

QVariant mndStringList::tableViewObjectValueForTableColumn(QObject *, int, int row)
{
    return stringAtIndex(quint64(row));
}

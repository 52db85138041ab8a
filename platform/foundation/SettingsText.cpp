#include "platform/foundation/SettingsText.h"

#include "platform/foundation/SettingsValue.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Where the line that begins there ends: lines go on in quotes and behind a backslash.
qsizetype endOfLine(QByteArrayView text, qsizetype at)
{
    bool isQuoted = false;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '\\')
            ++at;
        else if (c == '"')
            isQuoted = !isQuoted;
        else if (!isQuoted && (c == '\n' || c == '\r' || c == ';'))
            break;
    }
    return std::min(at, text.size());
}

/// Where "=" stands outside of quotes; -1 where it does not.
qsizetype equalsSign(QByteArrayView line)
{
    bool isQuoted = false;
    for (qsizetype at = 0; at < line.size(); ++at) {
        if (line[at] == '\\')
            ++at;
        else if (line[at] == '"')
            isQuoted = !isQuoted;
        else if (line[at] == '=' && !isQuoted)
            return at;
    }
    return -1;
}

/// QSettings takes slashes for groups, and joins several into one: it gets none.
QByteArray keyInFile(const QString &key)
{
    return QUrl::toPercentEncoding(QString::fromLatin1(QUrl::toPercentEncoding(key)), {}, "~");
}

QString keyFromFile(QByteArrayView key)
{
    return QUrl::fromPercentEncoding(QByteArray::fromPercentEncoding(key.trimmed().toByteArray()));
}

/// What the keys below a line such as "[name]" begin with.
QString groupIn(QByteArrayView line)
{
    const qsizetype end = line.indexOf(']');
    const QByteArrayView name = line.sliced(1, (end < 0 ? line.size() : end) - 1).trimmed();
    const auto is = [&](const char *other) {
        return name.compare(other, Qt::CaseInsensitive) == 0;
    };
    if (is("general")) // this is what QSettings calls those outside of groups
        return {};
    return is("%general") ? u"General/"_s : keyFromFile(name) + u'/';
}

/// Whether the next line would not become a part of it.
bool isClosed(QByteArrayView entry)
{
    const QByteArray line = entry.toByteArray() + '\n';
    return endOfLine(line, 0) == entry.size();
}

} // namespace

namespace SettingsText {

Parsed parse(const QByteArray &text)
{
    Parsed parsed;
    QString group;
    qsizetype at = text.startsWith("\xef\xbb\xbf") ? 3 : 0;
    while (at < text.size()) {
        const qsizetype start = at;
        if (text[at] == ';') {
            while (at < text.size() && text[at] != '\n' && text[at] != '\r')
                ++at;
            continue;
        }
        at = endOfLine(text, at);
        const QByteArrayView line = QByteArrayView(text).sliced(start, at - start).trimmed();
        at += at < text.size() && text[at] != ';';
        if (line.isEmpty())
            continue;
        if (line.startsWith('[')) {
            group = groupIn(line);
            parsed.isWhole &= line.contains(']');
            continue;
        }
        const qsizetype equals = equalsSign(line);
        const QString key = equals < 0 ? QString() : group + keyFromFile(line.first(equals));
        const QByteArrayView entry = line.sliced(equals + 1).trimmed();
        parsed.isWhole &= equals >= 0 && isClosed(entry);
        // What stands outside of groups is newer than what an old file has in one.
        if (equals >= 0 && (group.isEmpty() || !parsed.entries.contains(key)))
            parsed.entries.insert(key,
                                  isClosed(entry) ? entry.toByteArray()
                                                  : SettingsValue::closed(entry.toByteArray()));
    }
    return parsed;
}

QByteArray text(const Entries &entries)
{
    QByteArray text;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        if (!entry.key().isEmpty())
            text += keyInFile(entry.key()) + '=' + entry.value() + '\n';
    }
    return text.isEmpty() ? text : "[General]\n" + text;
}

} // namespace SettingsText

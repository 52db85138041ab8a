#include "platform/foundation/DesktopEntry.h"

#include "platform/foundation/RegularFile.h"

#include <QStringDecoder>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype largestFile = 1024 * 1024;

QString unescaped(const QString &written)
{
    QString value;
    value.reserve(written.size());
    for (qsizetype i = 0; i < written.size(); ++i) {
        if (written[i] != u'\\' || i + 1 == written.size()) {
            value += written[i];
            continue;
        }
        switch (written[++i].unicode()) {
        case u's':
            value += u' ';
            break;
        case u'n':
            value += u'\n';
            break;
        case u't':
            value += u'\t';
            break;
        case u'r':
            value += u'\r';
            break;
        case u'\\':
            value += u'\\';
            break;
        default:
            // No escape of the format: it may be one of Exec's quoting.
            value += u'\\';
            value += written[i];
        }
    }
    return value;
}

/// Splits what is quoted as in a shell, but with double quotes only. Empty when a quote stays open.
QStringList splitCommand(const QString &line)
{
    QStringList arguments;
    QString argument;
    bool inQuotes = false;
    bool isArgument = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (inQuotes && c == u'\\' && i + 1 < line.size() && u"\"`$\\"_s.contains(line[i + 1])) {
            argument += line[++i];
        } else if (c == u'"') {
            inQuotes = !inQuotes;
            isArgument = true;
        } else if (!inQuotes && (c == u' ' || c == u'\t')) {
            if (isArgument)
                arguments << argument;
            argument.clear();
            isArgument = false;
        } else {
            argument += c;
            isArgument = true;
        }
    }
    if (inQuotes)
        return {};
    if (isArgument)
        arguments << argument;
    return arguments;
}

/// The argument without the format's field codes.
QString withoutFieldCodes(const QString &argument)
{
    QString plain;
    for (qsizetype i = 0; i < argument.size(); ++i) {
        if (argument[i] != u'%')
            plain += argument[i];
        else if (++i < argument.size() && argument[i] == u'%')
            plain += u'%';
    }
    return plain;
}

} // namespace

Result<DesktopEntry> DesktopEntry::read(const QString &path)
{
    const Result<QByteArray> data = RegularFile::read(path, largestFile);
    return data ? parse(data.value()) : Result<DesktopEntry>::failure(data.error());
}

Result<DesktopEntry> DesktopEntry::parse(const QByteArray &data)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(data);
    if (decoder.hasError() || text.contains(QChar(u'\0')))
        return Result<DesktopEntry>::failure(u"it is not valid UTF-8 text"_s);
    DesktopEntry entry;
    bool inGroup = false;
    for (QStringView line : QStringView(text).split(u'\n')) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            if (inGroup)
                break;
            inGroup = line == "[Desktop Entry]"_L1;
        }
        if (!inGroup)
            return Result<DesktopEntry>::failure(u"it does not begin with a desktop entry"_s);
        const qsizetype equals = line.indexOf(u'=');
        if (equals > 0) {
            entry.m_values.insert(line.first(equals).trimmed().toString(),
                                  line.mid(equals + 1).trimmed().toString());
        }
    }
    if (!inGroup)
        return Result<DesktopEntry>::failure(u"it holds no desktop entry"_s);
    return entry;
}

QString DesktopEntry::string(const QString &key) const
{
    const auto found = m_values.constFind(key);
    return found == m_values.cend() ? QString() : unescaped(*found);
}

QStringList DesktopEntry::strings(const QString &key) const
{
    const QString written = m_values.value(key);
    QStringList strings;
    QString part;
    for (qsizetype i = 0; i < written.size(); ++i) {
        if (written[i] == u';') {
            strings << unescaped(std::exchange(part, {}));
            continue;
        }
        const bool isEscape = written[i] == u'\\' && i + 1 < written.size();
        if (!isEscape || written[i + 1] != u';')
            part += written[i];
        if (isEscape)
            part += written[++i];
    }
    if (!part.isEmpty())
        strings << unescaped(part);
    return strings;
}

bool DesktopEntry::boolean(const QString &key, bool fallback) const
{
    const QString value = m_values.value(key);
    return value == "true"_L1 || (fallback && value != "false"_L1);
}

QStringList DesktopEntry::command() const
{
    QStringList arguments = splitCommand(string(u"Exec"_s));
    const auto isFieldCode = [](const QString &argument) {
        return argument.size() == 2 && argument[0] == u'%' && argument[1] != u'%';
    };
    arguments.removeIf(isFieldCode);
    for (QString &argument : arguments)
        argument = withoutFieldCodes(argument);
    return arguments;
}

QString DesktopEntry::quotedArgument(const QString &argument)
{
    QString quoted;
    for (const QChar c : argument) {
        if (u"\"`$\\"_s.contains(c))
            quoted += u'\\';
        else if (c == u'%')
            quoted += u'%';
        quoted += c;
    }
    return escaped(u'"' + quoted + u'"');
}

QString DesktopEntry::escaped(const QString &value)
{
    QString written = value;
    written.replace(u'\\', "\\\\"_L1);
    written.replace(u'\n', "\\n"_L1);
    written.replace(u'\t', "\\t"_L1);
    written.replace(u'\r', "\\r"_L1);
    if (written.startsWith(u' '))
        written.replace(0, 1, "\\s"_L1);
    return written;
}

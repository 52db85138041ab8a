#include "platform/foundation/RealUserDefaults.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/MainThread.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <QUuid>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

/// Another process has written long before. The main thread waits.
constexpr auto longestWait = 40ms;
/// What is not written then is lost.
constexpr auto longestWaitAtTheEnd = 1s;

// An INI file knows texts only: a tag before the text says what else it was.
constexpr QLatin1StringView booleanTag = "bool:"_L1;
constexpr QLatin1StringView integerTag = "int:"_L1;
constexpr QLatin1StringView longTag = "long:"_L1;
constexpr QLatin1StringView realTag = "real:"_L1;
constexpr QLatin1StringView textTag = "text:"_L1;
constexpr QLatin1StringView tags[] = {booleanTag, integerTag, longTag, realTag, textTag};

bool hasTag(const QString &text)
{
    return std::any_of(std::begin(tags), std::end(tags),
                       [&](QLatin1StringView tag) { return text.startsWith(tag); });
}

QVariant toFile(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return booleanTag + (value.toBool() ? u"true"_s : u"false"_s);
    case QMetaType::Int:
        return integerTag + QString::number(value.toInt());
    case QMetaType::LongLong:
        return longTag + QString::number(value.toLongLong());
    case QMetaType::Double:
        return realTag + QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QString: {
        const QString text = value.toString();
        return hasTag(text) ? textTag + text : text;
    }
    case QMetaType::QByteArray:
        return value;
    default:
        // A map is stored with all its types; a list alone would become a list of texts.
        return QVariantMap{{QString(), value}};
    }
}

QVariant fromFile(const QVariant &stored)
{
    if (stored.typeId() == QMetaType::QVariantMap)
        return stored.toMap().value(QString());
    if (stored.typeId() != QMetaType::QString)
        return stored;
    const QString text = stored.toString();
    if (!hasTag(text))
        return text;
    const QString rest = text.section(u':', 1);
    bool ok = true;
    QVariant value = rest;
    if (text.startsWith(booleanTag))
        value = rest == "true"_L1;
    else if (text.startsWith(integerTag))
        value = rest.toInt(&ok);
    else if (text.startsWith(longTag))
        value = rest.toLongLong(&ok);
    else if (text.startsWith(realTag))
        value = rest.toDouble(&ok);
    return ok ? value : text;
}

// QSettings takes slashes for groups, and joins several into one.
QString keyInFile(const QString &key)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(key));
}

QString keyFromFile(const QString &key)
{
    return QUrl::fromPercentEncoding(key.toLatin1());
}

/// Open when this process may write in the folder. A kernel's lock ends with the process that holds
/// it, however that ends; on the folder itself it leaves nothing behind either.
FileDescriptor lockFolder(const QString &path, std::chrono::milliseconds longest)
{
    const auto end = std::chrono::steady_clock::now() + longest;
    FileDescriptor folder(uninterrupted([&] {
        return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }));
    while (folder.isOpen() && ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0) {
        // A file system without such locks: every write replaces the whole file all the same.
        if (errno != EWOULDBLOCK && errno != EINTR)
            break;
        if (std::chrono::steady_clock::now() >= end)
            folder.reset();
        else
            std::this_thread::sleep_for(1ms);
    }
    return folder;
}

/// 0 when there is none.
ino_t fileNumber(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

/// What is wrong with what stands in a file's place, and could keep whoever opens it waiting; null
/// for a file and for nothing at all.
QString notAFile(const QString &path)
{
    const QFileInfo item(path);
    return item.exists() && !item.isFile() ? u"it is no file"_s : QString();
}

/// What the names begin with under which new files are made.
QString scratchName(const QString &target)
{
    return target + u".new-"_s;
}

/// What processes that were killed have left. Only under the lock.
void removeScratchFiles(const QString &target)
{
    // With what QSettings makes beside it; the folder may be full of the user's own files.
    static const QRegularExpression made(u"^[0-9a-f]{32}(\\..*)?$"_s);
    const QDir folder = QFileInfo(target).dir();
    const QString start = QFileInfo(scratchName(target)).fileName();
    const QStringList left =
        folder.entryList({start + u'*'}, QDir::Files | QDir::System | QDir::Hidden);
    for (const QString &name : left) {
        if (made.match(name.sliced(start.size())).hasMatch())
            QFile::remove(folder.filePath(name));
    }
}

/// Copies a file if there is one, and answers what went wrong. Unlike QFile::copy() it does not
/// wait for the disk, since the copy is changed at once.
QString copyFile(const QString &from, const QString &to)
{
    QFile old(from);
    if (!old.exists())
        return {};
    QFile copy(to);
    if (!old.open(QIODevice::ReadOnly))
        return old.errorString();
    const QByteArray content = old.readAll();
    if (old.error() != QFile::NoError)
        return old.errorString();
    if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner)
        || copy.write(content) != content.size() || !copy.flush()
        || !copy.setPermissions(old.permissions()))
        return copy.errorString();
    return {};
}

} // namespace

QString RealUserDefaults::defaultFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + u"/Solvane/solvane.conf"_s;
}

RealUserDefaults::RealUserDefaults(const QString &filePath, SystemLog *log)
    : m_filePath(filePath)
    , m_log(log)
{
    if (const QString problem = notAFile(m_filePath); !problem.isNull()) {
        tell(u"The settings in %1 could not be read: %2"_s.arg(m_filePath, problem));
        return;
    }
    Values values;
    const QSettings file(m_filePath, QSettings::IniFormat);
    const QStringList keys = file.allKeys();
    for (const QString &key : keys)
        values.insert(keyFromFile(key), fromFile(file.value(key)));
    if (file.status() == QSettings::AccessError)
        tell(u"The settings in %1 could not be read."_s.arg(m_filePath));
    m_fileIsDamaged = file.status() == QSettings::FormatError;
    m_values.replace(std::move(values));
}

RealUserDefaults::~RealUserDefaults()
{
    write(longestWaitAtTheEnd);
}

QVariant RealUserDefaults::value(const QString &key) const
{
    return m_values.read([&](const Values &values) { return values.value(key); });
}

QStringList RealUserDefaults::keys() const
{
    QStringList keys =
        m_values.read([](const Values &values) { return QStringList(values.keys()); });
    keys.sort();
    return keys;
}

void RealUserDefaults::setValue(const QString &key, const QVariant &value)
{
    change(key, value.isValid() ? std::optional(value) : std::nullopt);
}

void RealUserDefaults::removeValue(const QString &key)
{
    change(key, std::nullopt);
}

void RealUserDefaults::change(const QString &key, const std::optional<QVariant> &value)
{
    if (key.isEmpty())
        return;
    if (qApp && !MainThread::isCurrent())
        return MainThread::runAndWait([&] { change(key, value); });
    Values values = m_values.latest();
    if (value)
        values.insert(key, *value);
    else if (!values.remove(key))
        return;
    m_pending.insert(key, value);
    m_values.replace(std::move(values));
}

bool RealUserDefaults::synchronize()
{
    bool written = false;
    if (qApp && !MainThread::isCurrent())
        MainThread::runAndWait([&] { written = write(longestWait); });
    else
        written = write(longestWait);
    return written;
}

void RealUserDefaults::tell(const QString &message) const
{
    if (m_log)
        m_log->write(message);
}

bool RealUserDefaults::write(std::chrono::milliseconds longest)
{
    if (m_pending.isEmpty())
        return true;
    const QString problem = replaceFile(longest);
    if (!problem.isNull()) {
        tell(u"The settings could not be written to %1: %2"_s.arg(m_filePath, problem));
        return false;
    }
    m_pending.clear();
    return true;
}

QString RealUserDefaults::keepDamagedFile(const QString &target)
{
    QFile damaged(target);
    QString kept = target + u".damaged"_s;
    for (int number = 2; m_fileIsDamaged && QFile::exists(kept); ++number)
        kept = target + u".damaged-%1"_s.arg(number);
    if (m_fileIsDamaged && !damaged.copy(kept))
        return damaged.errorString();
    m_fileIsDamaged = false;
    return {};
}

QString RealUserDefaults::replaceFile(std::chrono::milliseconds longest)
{
    // A link stays: what it leads to is replaced.
    const QString canonical = QFileInfo(m_filePath).canonicalFilePath();
    const QString target = canonical.isEmpty() ? m_filePath : canonical;
    const QString folder = QFileInfo(target).path();
    if (!QDir().mkpath(folder))
        return u"its folder cannot be made"_s;
    if (const QString problem = notAFile(target); !problem.isNull())
        return problem;
    const FileDescriptor lock = lockFolder(folder, longest);
    if (!lock.isOpen())
        return errno == EWOULDBLOCK ? u"another process does not end writing"_s : qt_error_string();
    if (const QString problem = keepDamagedFile(target); !problem.isNull())
        return problem;

    // QSettings has a lock file of its own beside what it writes, which outlives a process that is
    // killed, and may wait for it half a minute or for ever. It also takes a file of the same size
    // and time for the one it knows. A name that nobody else ever has keeps it from both.
    removeScratchFiles(target);
    const QString made = scratchName(target) + QUuid::createUuid().toString(QUuid::Id128);
    const auto tidy = qScopeGuard([&] { QFile::remove(made); });
    if (const QString problem = copyFile(target, made); !problem.isNull())
        return problem;
    const std::optional<bool> isChanged = changeFile(made);
    if (!isChanged)
        return u"the new file cannot be written"_s;
    if (*isChanged
        && ::rename(QFile::encodeName(made).constData(), QFile::encodeName(target).constData())
            != 0)
        return qt_error_string();
    return {};
}

std::optional<bool> RealUserDefaults::changeFile(const QString &path) const
{
    const ino_t before = fileNumber(path);
    QSettings file(path, QSettings::IniFormat);
    bool isChanged = false;
    for (auto entry = m_pending.cbegin(); entry != m_pending.cend(); ++entry) {
        const QString key = keyInFile(entry.key());
        isChanged |= entry.value() || file.contains(key);
        if (entry.value())
            file.setValue(key, toFile(*entry.value()));
        else
            file.remove(key);
    }
    file.sync();
    // Its status stays the first thing that went wrong, which may be a line that nobody
    // understands. But what it writes is always a new file.
    if (isChanged && fileNumber(path) == before)
        return std::nullopt;
    return isChanged;
}

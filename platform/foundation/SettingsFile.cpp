#include "platform/foundation/SettingsFile.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/FileReplacement.h"
#include "platform/foundation/RegularFile.h"
#include "platform/foundation/SettingsValue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <climits>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

/// Another process has written long before.
constexpr auto longestWait = 1s;

constexpr qsizetype largestSettings = qsizetype(1) << 28;

/// Open when this process may write in the folder. A kernel's lock ends with the process that holds
/// it, however that ends; on the folder itself it leaves nothing behind either.
FileDescriptor lockFolder(const QString &path)
{
    const auto end = std::chrono::steady_clock::now() + longestWait;
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

/// Where the links lead that stand in the file's place and stay there, also when nothing is at
/// their end yet.
Result<QString> linksFollowed(QString path)
{
    constexpr int mostLinks = 40; // as many as the system follows
    std::array<char, PATH_MAX> target{};
    for (int links = 0; links < mostLinks; ++links) {
        const ssize_t size =
            ::readlink(QFile::encodeName(path).constData(), target.data(), target.size());
        if (size < 0 && errno != EINVAL && errno != ENOENT)
            return Result<QString>::failure(qt_error_string());
        if (size < 0)
            return path;
        const QString text = QFile::decodeName(QByteArray(target.data(), size));
        path = text.startsWith(u'/') ? text : QFileInfo(path).path() + u'/' + text;
    }
    return Result<QString>::failure(qt_error_string(ELOOP));
}

/// Null, which is no failure, where there is no file. What cannot be looked at may well be there.
Result<QByteArray> contentOf(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return errno == ENOENT ? QByteArray() : Result<QByteArray>::failure(qt_error_string());
    // Whoever opens something else could be kept waiting.
    if (!S_ISREG(status.st_mode))
        return Result<QByteArray>::failure(u"it is no file"_s);
    return RegularFile::read(path, largestSettings);
}

QString keepDamaged(const QString &path, const QByteArray &content)
{
    QString kept = path + u".damaged"_s;
    for (int number = 2; QFile::exists(kept); ++number)
        kept = path + u".damaged-%1"_s.arg(number);
    const std::error_code error = replaceFile(kept, content, 0600);
    return error ? qt_error_string(error.value()) : QString();
}

} // namespace

void SettingsChanges::follow(const SettingsChanges &later)
{
    if (later.isClearedFirst)
        *this = {};
    isClearedFirst |= later.isClearedFirst;
    values.insert(later.values);
}

QHash<QString, QVariant> SettingsFile::read(QString &problem)
{
    QHash<QString, QVariant> values;
    const Result<QByteArray> content = contentOf(m_path);
    if (!content)
        problem = content.error();
    const SettingsText::Entries entries = SettingsText::parse(content.valueOr({})).entries;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
        values.insert(entry.key(), SettingsValue::decoded(entry.value()));
    return values;
}

QString SettingsFile::change(const SettingsChanges &changes)
{
    const QString folder = QFileInfo(m_path).path();
    // The user's alone: whoever may open it can hold its lock.
    constexpr auto own = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    if (!QDir(folder).exists() && !(QDir().mkpath(folder) && QFile::setPermissions(folder, own)))
        return u"its folder cannot be made"_s;
    const Result<QString> followed = linksFollowed(m_path);
    if (!followed)
        return followed.error();
    const QString &target = followed.value();
    const FileDescriptor lock = lockFolder(QFileInfo(target).path());
    if (!lock.isOpen())
        return errno == EWOULDBLOCK ? u"another process does not end writing"_s : qt_error_string();
    const Result<QByteArray> content = contentOf(target);
    if (!content)
        return content.error();
    const SettingsText::Parsed parsed = SettingsText::parse(content.value());
    if (!parsed.isWhole && content.value() != m_keptDamaged) {
        if (const QString problem = keepDamaged(target, content.value()); !problem.isNull())
            return problem;
        m_keptDamaged = content.value();
    }

    SettingsText::Entries entries =
        changes.isClearedFirst ? SettingsText::Entries() : parsed.entries;
    for (auto value = changes.values.cbegin(); value != changes.values.cend(); ++value) {
        if (*value)
            entries.insert(value.key(), SettingsValue::encoded(**value));
        else
            entries.remove(value.key());
    }
    if (entries == parsed.entries && parsed.isWhole)
        return {};
    struct stat status = {};
    const bool isThere = ::stat(QFile::encodeName(target).constData(), &status) == 0;
    const std::error_code error =
        replaceFile(target, SettingsText::text(entries), isThere ? status.st_mode & 07777U : 0600U);
    return error ? qt_error_string(error.value()) : QString();
}

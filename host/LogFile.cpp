#include "host/LogFile.h"

#include "helpers/mndHelpers.h"
#include "platform/foundation/FilePlace.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>

#include <atomic>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// A file that grows as fast as it is removed is let be after so many times.
constexpr int removalAttempts = 12;

/// Set while a thread makes room. The others write to whatever file is there: were they to make
/// room as well, they would remove the new file with the lines that are already in it.
std::atomic_flag makingRoom = ATOMIC_FLAG_INIT;

FileDescriptor openToAppend(const QString &path, int flags)
{
    const FilePlace place = FilePlace::of(path);
    flags |= O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK;
    constexpr mode_t mode = 0644;
    return FileDescriptor(
        uninterrupted([&] { return ::openat(place.folder(), place.path(), flags, mode); }));
}

struct Opened
{
    FileDescriptor file;
    bool isNew = false;
};

Opened openOrMake(const QString &path)
{
    FileDescriptor file = openToAppend(path, 0);
    if (file.isOpen() || errno != ENOENT)
        return {std::move(file), false};
    file = openToAppend(path, O_CREAT | O_EXCL);
    if (!file.isOpen() && errno == ENOENT && QDir().mkpath(QFileInfo(path).path()))
        file = openToAppend(path, O_CREAT | O_EXCL);
    if (file.isOpen() || errno != EEXIST)
        return {std::move(file), true};
    // Another thread's line was faster, or a link leads to where nothing is yet.
    return {openToAppend(path, O_CREAT), false};
}

/// Makes a blank line of what a full disk has left of a line. It stays where it is: by the time the
/// file could be cut, another thread's line may stand behind it.
void blankOut(int appending, const QString &path, ssize_t written)
{
    const off_t end = ::lseek(appending, 0, SEEK_CUR);
    const FilePlace place = FilePlace::of(path);
    // Writes to a given place end up at the end where the file is open for appending.
    const FileDescriptor file(
        ::openat(place.folder(), place.path(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat ours;
    struct stat there;
    if (written <= 0 || end < written || !file.isOpen() || ::fstat(appending, &ours) != 0
        || ::fstat(file.number(), &there) != 0 || ours.st_ino != there.st_ino
        || ours.st_dev != there.st_dev)
        return;
    QByteArray blank(written - 1, ' ');
    blank += '\n';
    static_cast<void>(
        ::pwrite(file.number(), blank.constData(), size_t(blank.size()), end - written) == 0);
}

LogFile::Written append(const QString &path, const QByteArray &data)
{
    using LogFile::Written;
    Opened opened = openOrMake(path);
    FileDescriptor &file = opened.file;
    if (!file.isOpen())
        return Written::NotAtAll;
    const ssize_t written = uninterrupted(
        [&] { return ::write(file.number(), data.constData(), size_t(data.size())); });
    const bool whole = written == data.size();
    if (!whole)
        blankOut(file.number(), path, written);
    if (!file.close() || !whole)
        return Written::NotAtAll;
    return opened.isNew ? Written::ToANewFile : Written::ToTheFile;
}

void makeRoom(const QString &path, mndHelpers &helpers)
{
    for (int attempt = 0; attempt < removalAttempts; ++attempt) {
        if (!QFileInfo::exists(path) || helpers.getFileSize(path) <= LogFile::sizeLimit
            || !helpers.removeFileAtPath(path))
            return;
    }
}

} // namespace

namespace LogFile {

QString line(const QString &message, const QDateTime &time, const QLocale &locale)
{
    QString text = message;
    text.remove(u" NULL"_s);
    return locale.toString(time.date(), QLocale::ShortFormat) + u' '
        + locale.toString(time.time(), QLocale::ShortFormat) + u' ' + text + u'\n';
}

Written write(const QString &path, const QString &line, mndHelpers *helpers)
{
    if (helpers && !makingRoom.test_and_set()) {
        const auto done = qScopeGuard([] { makingRoom.clear(); });
        makeRoom(path, *helpers);
    }
    return append(path, line.toUtf8());
}

} // namespace LogFile

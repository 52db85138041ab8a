#include "host/LogFile.h"

#include "helpers/mndHelpers.h"
#include "platform/foundation/FilePlace.h"

#include <QDir>
#include <QFileInfo>

#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <thread>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

/// A file that grows as fast as it is removed is let be after so many times.
constexpr int removalAttempts = 12;

/// A line whose file is gone as soon as it is written is given up after so many.
constexpr int attempts = 100;

/// How long a thread waits for the one that removes the file.
constexpr int longestRemoval = 1000; // milliseconds

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

bool isSame(const FileDescriptor &one, const FileDescriptor &other)
{
    struct stat64 first;
    struct stat64 second;
    return ::fstat64(one.number(), &first) == 0 && ::fstat64(other.number(), &second) == 0
        && first.st_ino == second.st_ino && first.st_dev == second.st_dev;
}

/// Whether the path leads to the file that is open.
bool isAt(const QString &path, const FileDescriptor &file)
{
    const FilePlace place = FilePlace::of(path);
    const FileDescriptor there(::openat(place.folder(), place.path(), O_PATH | O_CLOEXEC));
    return there.isOpen() && isSame(there, file);
}

bool isRemoved(const FileDescriptor &file)
{
    struct stat64 status;
    return ::fstat64(file.number(), &status) == 0 && status.st_nlink == 0;
}

/// The same file, to change what is in it: writes to a given place end up at the end where it is
/// open for appending. Not open when another has the path by now.
FileDescriptor openToChange(const QString &path, const FileDescriptor &appending)
{
    const FilePlace place = FilePlace::of(path);
    FileDescriptor file(
        ::openat(place.folder(), place.path(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return file.isOpen() && isSame(file, appending) ? std::move(file) : FileDescriptor();
}

/// Makes a line of so many blanks and a line feed.
void blankOut(const FileDescriptor &file, off64_t start, qsizetype size)
{
    const QByteArray blank = QByteArray(size - 1, ' ') + '\n';
    std::ignore = ::pwrite64(file.number(), blank.constData(), size_t(size), start);
}

/// Ends what stands before a line and is none, since its process was killed. It is over with that:
/// whoever writes to a file's end has the file to itself meanwhile.
void endTornLine(const QString &path, const FileDescriptor &appending, off64_t start)
{
    std::array<char, 4> text;
    const off64_t count = std::min(start, off64_t(text.size()));
    const FileDescriptor file = count > 0 ? openToChange(path, appending) : FileDescriptor();
    if (!file.isOpen()
        || ::pread64(file.number(), text.data(), size_t(count), start - count) != count)
        return;
    const auto last = text.begin() + count - 1;
    if (*last == '\n')
        return;
    // The whole last character, so that the text stays UTF-8.
    auto first = last;
    while (first != text.begin() && (*first & 0xc0) == 0x80)
        --first;
    const qsizetype size = last - first + 1;
    blankOut(file, start - size, size);
}

/// Where the line stands in the file; nothing when no part of it does, but for a blank line.
std::optional<off64_t> append(const QString &path, const FileDescriptor &file,
                              const QByteArray &line)
{
    const ssize_t written = uninterrupted(
        [&] { return ::write(file.number(), line.constData(), size_t(line.size())); });
    const off64_t start = ::lseek64(file.number(), 0, SEEK_CUR) - written;
    if (written == line.size()) {
        endTornLine(path, file, start);
        return start;
    }
    // A full disk has taken a part. It stays where it is: by the time the file could be cut,
    // another thread's line may stand behind it.
    const FileDescriptor there =
        written > 0 && start >= 0 ? openToChange(path, file) : FileDescriptor();
    if (there.isOpen())
        blankOut(there, start, written);
    return std::nullopt;
}

/// Removes a file, open here, that is too large, so that no other loses its new lines: one thread
/// at a time has a lock on it, and only while it still has its path.
/// @param removals left; none any more after one that failed
/// @return whether there may be another file by now
bool makeRoom(const QString &path, const FileDescriptor &file, mndHelpers &helpers, int &removals)
{
    if (removals == 0 || helpers.getFileSize(path) <= LogFile::sizeLimit)
        return false;
    int waited = 0;
    while (::flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        if (++waited > longestRemoval)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (!isAt(path, file))
        return true;
    removals = helpers.removeFileAtPath(path) ? removals - 1 : 0;
    return removals > 0;
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
    const QByteArray data = line.toUtf8();
    int removals = removalAttempts;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        Opened opened = openOrMake(path);
        FileDescriptor &file = opened.file;
        if (!file.isOpen())
            return Written::NotAtAll;
        if (helpers && !opened.isNew && makeRoom(path, file, *helpers, removals))
            continue;
        const std::optional<off64_t> start = append(path, file, data);
        if (!start)
            return Written::NotAtAll;
        // Others may have filled the file or removed it in between; the line belongs in the next.
        const bool isBeyond = helpers && *start > off64_t(sizeLimit);
        if ((isBeyond && makeRoom(path, file, *helpers, removals)) || isRemoved(file))
            continue;
        if (!file.close())
            break;
        return opened.isNew ? Written::ToANewFile : Written::ToTheFile;
    }
    return Written::NotAtAll;
}

} // namespace LogFile

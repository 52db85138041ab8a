#include "platform/foundation/FileReplacement.h"

#include "platform/foundation/FilePlace.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <sys/file.h>
#include <sys/stat.h>

#include <cstdio>
#include <tuple>
#include <utility>

namespace {

/// The names under which a new file waits for its own. They are always the same for a file, so that
/// those which a process has left when it was killed are found without reading the folder. Whoever
/// has a file under one of them holds a lock on it, which ends with the process.
constexpr int waitingNames = 8;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Short, so that it fits wherever the file's own name does. Beyond the fixed ones, which are all
/// in use only if as many threads replace the same file at a time, names that nobody else has.
QByteArray waitingName(const FilePlace &place, int number)
{
    const QByteArray name(place.path());
    const QByteArray which = number < waitingNames
        ? QCryptographicHash::hash(name, QCryptographicHash::Md5).first(8).toHex()
        : QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    return ".solvane-" + which + '-' + QByteArray::number(number);
}

/// False when another thread or process has it.
bool lock(const FileDescriptor &file)
{
    // A file system without locks: nobody takes away what is left then, nor what is in use.
    return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool hasName(const FileDescriptor &file, const FilePlace &place, const QByteArray &name)
{
    struct stat64 open;
    struct stat64 there;
    return ::fstat64(file.number(), &open) == 0
        && ::fstatat64(place.folder(), name.constData(), &there, AT_SYMLINK_NOFOLLOW) == 0
        && S_ISREG(open.st_mode) && open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

void removeLeft(const FilePlace &place)
{
    for (int number = 0; number < waitingNames; ++number) {
        const QByteArray name = waitingName(place, number);
        FileDescriptor left;
        // Network file systems lock only what may be written; permissions may allow only reading.
        for (const int access : {O_WRONLY, O_RDONLY}) {
            if (!left.isOpen())
                left = FileDescriptor(
                    ::openat(place.folder(), name.constData(),
                             access | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC));
        }
        // Without a lock of ours it is somebody's. With it, nobody else takes the name from it.
        if (left.isOpen() && ::flock(left.number(), LOCK_EX | LOCK_NB) == 0
            && hasName(left, place, name))
            ::unlinkat(place.folder(), name.constData(), 0);
    }
}

std::error_code fill(const FileDescriptor &file, QByteArrayView content,
                     std::optional<mode_t> permissions)
{
    // A disk may say only at the end that it took nothing.
    if (writeAll(file.number(), content)
        && (!permissions || ::fchmod(file.number(), *permissions) == 0)
        && uninterrupted([&] { return ::fsync(file.number()); }) == 0)
        return {};
    return lastError();
}

/// Gives a file without a name the first one that is free; null when it cannot have any.
QByteArray nameFile(const FileDescriptor &file, const FilePlace &place)
{
    const QByteArray open = "/proc/self/fd/" + QByteArray::number(file.number());
    for (int number = 0; number <= waitingNames; ++number) {
        const QByteArray name = waitingName(place, number);
        if (::linkat(AT_FDCWD, open.constData(), place.folder(), name.constData(),
                     AT_SYMLINK_FOLLOW)
            == 0)
            return name;
        if (errno != EEXIST)
            break;
    }
    return {};
}

/// A new file and its name; not open when there can be none.
std::pair<FileDescriptor, QByteArray> makeFile(const FilePlace &place)
{
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    for (int number = 0; number <= waitingNames; ++number) {
        const QByteArray name = waitingName(place, number);
        FileDescriptor file(uninterrupted(
            [&] { return ::openat64(place.folder(), name.constData(), flags, 0666); }));
        // Until it was locked, others took it for left.
        if (file.isOpen() && lock(file) && hasName(file, place, name))
            return {std::move(file), name};
        if (!file.isOpen() && errno != EEXIST)
            return {};
    }
    errno = EBUSY;
    return {};
}

/// Has a new name reach the disk. Who may not read a folder cannot ask that of it, but of the file.
std::error_code flushName(const FilePlace &place, const FileDescriptor &file)
{
    const FileDescriptor folder(::openat(place.folder(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const int flushed = folder.isOpen() ? folder.number() : file.number();
    // Some file systems do not know the request, and need none.
    if (uninterrupted([&] { return ::fsync(flushed); }) == 0 || errno == EINVAL)
        return {};
    return lastError();
}

} // namespace

std::error_code replaceFile(const QString &path, QByteArrayView content,
                            std::optional<mode_t> permissions)
{
    const FilePlace place = FilePlace::inFolder(path);
    if (place.isNowhere() || path.endsWith(u'/'))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    removeLeft(place);
    // Without a name nothing is left of it, whatever happens.
    FileDescriptor file(uninterrupted(
        [&] { return ::openat64(place.folder(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666); }));
    QByteArray name;
    if (file.isOpen() && lock(file)) {
        if (const std::error_code error = fill(file, content, permissions))
            return error;
        name = nameFile(file, place);
    }
    if (name.isNull()) { // not every file system can do that
        file.reset();
        std::tie(file, name) = makeFile(place);
        if (!file.isOpen())
            return lastError();
        if (const std::error_code error = fill(file, content, permissions)) {
            ::unlinkat(place.folder(), name.constData(), 0);
            return error;
        }
    }
    if (::renameat(place.folder(), name.constData(), place.folder(), place.path()) != 0) {
        const std::error_code error = lastError();
        ::unlinkat(place.folder(), name.constData(), 0);
        return error;
    }
    return flushName(place, file);
}

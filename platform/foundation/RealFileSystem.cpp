#include "platform/foundation/RealFileSystem.h"

#include "platform/foundation/FilePlace.h"
#include "platform/foundation/FileReplacement.h"
#include "platform/foundation/RegularFile.h"
#include "platform/foundation/TreeRemoval.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <tuple>

namespace {

FileDescriptor openFile(const QString &path, int flags, mode_t mode = 0)
{
    const FilePlace place = FilePlace::of(path);
    return FileDescriptor(uninterrupted(
        [&] { return ::openat64(place.folder(), place.path(), flags | O_CLOEXEC, mode); }));
}

bool writeContent(FileDescriptor file, QByteArrayView content)
{
    return file.isOpen() && writeAll(file.number(), content) && file.close();
}

bool isRegular(const FileDescriptor &file)
{
    struct stat64 status;
    return file.isOpen() && ::fstat64(file.number(), &status) == 0 && S_ISREG(status.st_mode);
}

/// False when the disk is too full; then the file is as it was. Where the file system cannot tell,
/// writing will.
bool hasRoomFor(const FileDescriptor &file, qsizetype size)
{
    struct stat64 before;
    if (size == 0 || ::fstat64(file.number(), &before) != 0)
        return size == 0;
    constexpr std::array isFull{ENOSPC, EDQUOT, EFBIG, EIO};
    int error = EINTR;
    while (error == EINTR)
        error = ::posix_fallocate64(file.number(), 0, size);
    if (std::find(isFull.begin(), isFull.end(), error) == isFull.end())
        return true;
    std::ignore = ::ftruncate64(file.number(), before.st_size); // part of the room may be there
    return false;
}

FileAttributes::Type typeOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileAttributes::RegularFile;
    case S_IFDIR:
        return FileAttributes::Folder;
    case S_IFLNK:
        return FileAttributes::Link;
    default:
        return FileAttributes::Other;
    }
}

class RealFileWriter : public FileWriter
{
public:
    explicit RealFileWriter(FileDescriptor file)
        : m_file(std::move(file))
    { }

    bool write(QByteArrayView bytes) override { return writeAll(m_file.number(), bytes); }
    bool synchronize() override
    {
        return uninterrupted([this] { return ::fsync(m_file.number()); }) == 0;
    }
    bool close() override { return m_file.close(); }

private:
    FileDescriptor m_file;
};

std::optional<FileAttributes> attributesAt(int folder, const char *name)
{
    struct stat64 status;
    if (::fstatat64(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return FileAttributes{typeOf(status.st_mode), status.st_size};
}

class RealHeldItem : public HeldItem
{
public:
    explicit RealHeldItem(const QString &path)
        : m_place(FilePlace::inFolder(path))
        , m_name(m_place.path())
    {
        // A slash at the end says that a folder is meant; removeTree() alone does without.
        if (path.endsWith(u'/') && !m_place.isNowhere())
            m_name += '/';
    }

    std::optional<FileAttributes> attributes() const override
    {
        return attributesAt(m_place.folder(), m_name.constData());
    }
    bool remove() override { return unlink(0) || (errno == EISDIR && unlink(AT_REMOVEDIR)); }
    bool removeTree() override { return ::removeTree(m_place); }
    std::unique_ptr<FileWriter> create(QByteArrayView content) override
    {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        FileDescriptor file(uninterrupted(
            [&] { return ::openat64(m_place.folder(), m_name.constData(), flags, 0600); }));
        if (!file.isOpen() || !writeAll(file.number(), content)
            || ::lseek64(file.number(), 0, SEEK_SET) != 0)
            return nullptr;
        return std::make_unique<RealFileWriter>(std::move(file));
    }

private:
    bool unlink(int flags)
    {
        return uninterrupted(
                   [&] { return ::unlinkat(m_place.folder(), m_name.constData(), flags); })
            == 0;
    }

    const FilePlace m_place;
    QByteArray m_name;
};

} // namespace

std::optional<FileAttributes> RealFileSystem::attributes(const QString &path) const
{
    const FilePlace place = FilePlace::of(path);
    return attributesAt(place.folder(), place.path());
}

bool RealFileSystem::exists(const QString &path) const
{
    const FilePlace place = FilePlace::of(path);
    return ::faccessat(place.folder(), place.path(), F_OK, 0) == 0;
}

std::unique_ptr<HeldItem> RealFileSystem::hold(const QString &path)
{
    return std::make_unique<RealHeldItem>(path);
}

std::optional<QByteArray> RealFileSystem::readFile(const QString &path, qsizetype limit) const
{
    const Result<QByteArray> content = RegularFile::read(path, limit);
    return content ? std::optional(content.value()) : std::nullopt;
}

bool RealFileSystem::writeFile(const QString &path, QByteArrayView content)
{
    FileDescriptor file = openFile(path, O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY, 0666);
    return isRegular(file) && hasRoomFor(file, content.size())
        && ::ftruncate64(file.number(), content.size()) == 0
        && writeContent(std::move(file), content);
}

bool RealFileSystem::replaceFile(const QString &path, QByteArrayView content)
{
    const std::error_code error = ::replaceFile(path, content);
    constexpr std::array keepsItsEntries{EACCES, EPERM, EROFS, EBUSY};
    const bool isKept = std::find(keepsItsEntries.begin(), keepsItsEntries.end(), error.value())
        != keepsItsEntries.end();
    return !error || (isKept && writeFile(path, content));
}

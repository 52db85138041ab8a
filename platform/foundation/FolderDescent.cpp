#include "platform/foundation/FolderDescent.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t bufferSize = 128 * 1024;
constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isDots(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool isShortage(int error)
{
    return error == EMFILE || error == ENFILE;
}

} // namespace

FolderDescent::FolderDescent(FileDescriptor start, int descriptors)
    : m_mostOpen(static_cast<size_t>(std::max(descriptors, 2)))
    , m_buffer(new char[bufferSize])
{
    m_levels.emplace_back().folder = std::make_shared<const FileDescriptor>(std::move(start));
}

bool FolderDescent::next(Entry &entry)
{
    Level &level = m_levels.back();
    for (;;) {
        if (level.position == level.end && !fill(level))
            return false;
        const char *at = (level.kept ? level.kept : m_buffer).get() + level.position;
        const auto *found = reinterpret_cast<const dirent64 *>(at);
        level.position += found->d_reclen;
        if (isDots(found->d_name))
            continue;
        entry = {found->d_name, static_cast<quint32>(std::strlen(found->d_name)), found->d_type};
        return true;
    }
}

bool FolderDescent::fill(Level &level)
{
    level.kept.reset();
    level.position = level.end = 0;
    if (level.complete || !level.folder)
        return false;
    // As much as there is room for: a folder read to its end needs no descriptor for the rest.
    while (bufferSize - level.end >= sizeof(dirent64)) {
        char *room = m_buffer.get() + level.end;
        const ssize_t count = uninterrupted(
            [&] { return ::getdents64(level.folder->number(), room, bufferSize - level.end); });
        if (count <= 0) {
            level.complete = true;
            break;
        }
        for (ssize_t offset = 0; offset < count;) {
            const auto *found = reinterpret_cast<const dirent64 *>(room + offset);
            level.resume = found->d_off;
            offset += found->d_reclen;
        }
        level.end += static_cast<size_t>(count);
    }
    return level.end > 0;
}

void FolderDescent::keepUnread(Level &level)
{
    if (level.kept)
        return;
    const size_t count = level.end - level.position;
    if (count > 0) {
        level.kept.reset(new char[count]);
        std::memcpy(level.kept.get(), m_buffer.get() + level.position, count);
    }
    level.position = 0;
    level.end = count;
}

bool FolderDescent::enter(const char *name)
{
    if (!m_levels.back().folder) {
        errno = ENOENT;
        return false;
    }
    const auto open = [&] { return ::openat(folder().number(), name, openFlags); };
    FileDescriptor child(uninterrupted(open));
    if (!child.isOpen() && isShortage(errno) && m_firstOpen + 1 < m_levels.size()) {
        giveUpAncestors();
        child = FileDescriptor(uninterrupted(open));
    }
    if (!child.isOpen())
        return false;
    keepUnread(m_levels.back());
    m_levels.emplace_back().folder = std::make_shared<const FileDescriptor>(std::move(child));
    if (m_levels.size() - m_firstOpen > m_mostOpen)
        giveUp(m_levels[m_firstOpen++]);
    return true;
}

void FolderDescent::leave()
{
    const Level below = std::move(m_levels.back());
    m_levels.pop_back();
    if (m_levels.back().folder)
        return;
    Level &level = m_levels.back();
    reopen(level, below);
    if (!level.folder) {
        // Its unread entries cannot be reached any more.
        level.kept.reset();
        level.position = level.end = 0;
        level.complete = true;
    }
    m_firstOpen = m_levels.size() - 1;
}

void FolderDescent::giveUp(Level &level)
{
    struct stat64 status;
    // A folder that does not tell which it is cannot be known again.
    if (::fstat64(level.folder->number(), &status) == 0) {
        level.device = status.st_dev;
        level.node = status.st_ino;
    }
    level.folder.reset();
}

void FolderDescent::giveUpAncestors()
{
    while (m_firstOpen + 1 < m_levels.size())
        giveUp(m_levels[m_firstOpen++]);
}

void FolderDescent::reopen(Level &level, const Level &below)
{
    if (!below.folder)
        return;
    FileDescriptor above(
        uninterrupted([&] { return ::openat(below.folder->number(), "..", openFlags); }));
    struct stat64 status;
    if (!above.isOpen() || ::fstat64(above.number(), &status) != 0 || status.st_dev != level.device
        || status.st_ino != level.node || level.node == 0)
        return;
    if (!level.complete && level.resume != 0
        && ::lseek64(above.number(), level.resume, SEEK_SET) != level.resume)
        return;
    level.folder = std::make_shared<const FileDescriptor>(std::move(above));
}

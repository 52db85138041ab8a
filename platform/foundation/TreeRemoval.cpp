#include "platform/foundation/TreeRemoval.h"

#include "platform/foundation/FolderDescent.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <utility>

namespace {

constexpr int openFolders = 16;

// Some file systems leave entries out while others are being removed, so that a folder may have to
// be gone through again. It does not become empty as long as somebody fills it.
constexpr int mostPasses = 64;

class TreeRemoval
{
public:
    explicit TreeRemoval(FileDescriptor parent)
        : m_descent(std::move(parent), openFolders)
    { }

    bool remove(const char *name)
    {
        m_folders.emplace_back();
        removeFolder(name);
        while (m_folders.size() > 1) {
            FolderDescent::Entry entry;
            if (!m_descent.next(entry))
                leave();
            else if (entry.type == DT_DIR)
                removeFolder(entry.name);
            else
                removeFile(entry.name);
        }
        return m_folders.back().removedAny && !m_folders.back().failed;
    }

private:
    struct Folder
    {
        std::string name;
        int pass = 1;
        bool removedAny = false;
        bool failed = false; ///< something in it stays
    };

    bool unlink(const char *name, int flags)
    {
        const int answer =
            uninterrupted([&] { return ::unlinkat(m_descent.descriptor(), name, flags); });
        if (answer == 0)
            m_folders.back().removedAny = true;
        return answer == 0 || errno == ENOENT;
    }

    void removeFile(const char *name)
    {
        if (unlink(name, 0))
            return;
        if (errno == EISDIR)
            removeFolder(name);
        else
            m_folders.back().failed = true;
    }

    void removeFolder(const char *name)
    {
        if (enter(name, 1))
            return;
        // What has taken a folder's place, then a folder that cannot be read but may be empty.
        const bool isFolder = errno != ENOTDIR && errno != ELOOP;
        if (errno != EXDEV && unlink(name, isFolder ? AT_REMOVEDIR : 0))
            return;
        m_folders.back().failed = true;
    }

    bool enter(const char *name, int pass)
    {
        const int parent = m_descent.descriptor();
        if (!m_descent.enter(name))
            return false;
        if (isMountPoint(parent, m_descent.descriptor())) {
            m_descent.leave();
            errno = EXDEV;
            return false;
        }
        m_folders.push_back({name, pass});
        return true;
    }

    /// Also when that cannot be found out.
    static bool isMountPoint(int parent, int folder)
    {
        struct statx of = {};
        if (::statx(folder, "", AT_EMPTY_PATH, STATX_TYPE, &of) != 0)
            return true;
        if (of.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT)
            return of.stx_attributes & STATX_ATTR_MOUNT_ROOT;
        struct statx above = {};
        return ::statx(parent, "", AT_EMPTY_PATH, STATX_TYPE, &above) != 0
            || above.stx_dev_major != of.stx_dev_major || above.stx_dev_minor != of.stx_dev_minor;
    }

    void leave()
    {
        const Folder folder = std::move(m_folders.back());
        m_folders.pop_back();
        m_descent.leave();
        if (unlink(folder.name.c_str(), AT_REMOVEDIR))
            return;
        const bool unexpected = (errno == ENOTEMPTY || errno == EEXIST) && !folder.failed;
        if (unexpected && folder.removedAny && folder.pass < mostPasses
            && enter(folder.name.c_str(), folder.pass + 1))
            return;
        m_folders.back().failed = true;
    }

    FolderDescent m_descent;
    std::vector<Folder> m_folders; ///< from the one that holds the tree to the current one
};

} // namespace

bool removeTree(const QString &path)
{
    return removeTree(FilePlace::inFolder(path));
}

bool removeTree(const FilePlace &place)
{
    if (place.isNowhere())
        return false;
    FileDescriptor folder(::fcntl(place.folder(), F_DUPFD_CLOEXEC, 0));
    return folder.isOpen() && TreeRemoval(std::move(folder)).remove(place.path());
}

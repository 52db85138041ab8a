#pragma once

#include "platform/foundation/FilePath.h"
#include "platform/foundation/TreeRemoval.h"
#include "tests/support/FullDisk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/fsuid.h>

/// A folder for a test to build trees in. Qt would leave some of what lies in it behind.
class FileTree
{
public:
    FileTree() { m_folder.setAutoRemove(false); }
    ~FileTree() { removeTree(text()); }
    Q_DISABLE_COPY_MOVE(FileTree)

    std::string path(const std::string &name = {}) const
    {
        return root + (name.empty() ? "" : "/") + name;
    }
    QString text(const std::string &name = {}) const { return FilePath::decode(path(name)); }

    void folder(const std::string &name) const
    {
        ASSERT_EQ(::mkdir(path(name).c_str(), 0755), 0) << name;
    }
    void file(const std::string &name, size_t size = 0) const
    {
        const int descriptor = ::open(path(name).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
        ASSERT_GE(descriptor, 0) << name;
        EXPECT_EQ(::ftruncate(descriptor, static_cast<off_t>(size)), 0);
        ::close(descriptor);
    }
    bool has(const std::string &name) const
    {
        return ::faccessat(AT_FDCWD, path(name).c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    }

    /// Folders in one another, longer together than any path may be, with a file in the last and,
    /// where asked for, one in each that is listed wherever the folder likes.
    std::string deep(int depth, bool files) const
    {
        std::string name = "deep";
        folder(name);
        int descriptor = ::open(path(name).c_str(), O_RDONLY | O_DIRECTORY);
        for (int i = 0; i < depth; ++i) {
            if (files || i == depth - 1)
                ::close(::openat(descriptor, "file", O_WRONLY | O_CREAT, 0644));
            EXPECT_EQ(::mkdirat(descriptor, "level", 0755), 0);
            const int next = ::openat(descriptor, "level", O_RDONLY | O_DIRECTORY);
            ::close(descriptor);
            descriptor = next;
            name += "/level";
        }
        ::close(descriptor);
        return name;
    }

private:
    QTemporaryDir m_folder;
    const std::string root = m_folder.path().toStdString();
};

/// Takes the powers of an administrator over files from this thread, and those it starts, for a
/// while: their file calls are made as somebody who owns nothing.
class NoPowers
{
public:
    NoPowers() { ::setfsuid(nobody); }
    ~NoPowers() { ::setfsuid(m_usual); }
    Q_DISABLE_COPY_MOVE(NoPowers)

private:
    static constexpr uid_t nobody = 65534;
    uid_t m_usual = ::geteuid();
};

/// Allows the process fewer descriptors for a while.
struct FewDescriptors : LowLimit
{
    explicit FewDescriptors(rlim_t count)
        : LowLimit(RLIMIT_NOFILE, count)
    { }
};

#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <QtGlobal>

#include <sys/types.h>

#include <memory>
#include <vector>

/// A way down into the folders of a tree and back, step by step, that reads their entries and
/// cannot be led out of the tree: folders are opened from the folder they lie in, links never
/// followed, and the way back is taken only when it leads to the very folder left before.
///
/// The number of open descriptors is bounded whatever the depth; memory grows with the depth and
/// with what is still unread of the folders on the way. One thread at a time.
class FolderDescent
{
public:
    struct Entry
    {
        const char *name = nullptr; ///< until the next call of next()
        quint32 length = 0;
        uchar type = 0; ///< DT_REG and its like (readdir(3)); DT_UNKNOWN where not told
    };

    /// @param start the folder to begin in. It stays open.
    /// @param descriptors how many more folders may be held open; at least two.
    FolderDescent(FileDescriptor start, int descriptors);

    /// The next entry of the current folder, without "." and "..", in the folder's own order. False
    /// at the end, and when the folder can be read no further.
    bool next(Entry &entry);

    /// Steps into a folder of the current one. False, with errno set, when that fails: ENOTDIR or
    /// ELOOP for what is no folder.
    bool enter(const char *name);

    /// Steps back to where enter() was called; not in the start folder. That folder may be out of
    /// reach by then, since it or the one below has been moved: it has no descriptor any more, and
    /// next() finds nothing.
    void leave();

    bool isAtStart() const { return m_levels.size() == 1; }
    /// The current folder's descriptor; -1 when it is out of reach.
    int descriptor() const { return m_levels.back().folder ? folder().number() : -1; }
    /// The same to be held on to; null when it is out of reach.
    std::shared_ptr<const FileDescriptor> shared() const { return m_levels.back().folder; }

private:
    struct Level
    {
        std::shared_ptr<const FileDescriptor> folder;
        std::unique_ptr<char[]> kept; ///< unread entries, while a folder below needs the buffer
        size_t position = 0;          ///< of the next entry, in `kept` or in the buffer
        size_t end = 0;
        off64_t resume = 0; ///< where the folder goes on behind these entries
        bool complete = false;
        dev_t device = 0; ///< which folder it was, once its descriptor has been given up
        ino64_t node = 0;
    };

    const FileDescriptor &folder() const { return *m_levels.back().folder; }
    bool fill(Level &level);
    void keepUnread(Level &level);
    void giveUp(Level &level);
    void giveUpAncestors();
    void reopen(Level &level, const Level &below);

    std::vector<Level> m_levels;
    size_t m_firstOpen = 1; ///< between it and the start folder no level holds a descriptor
    size_t m_mostOpen;
    std::unique_ptr<char[]> m_buffer;
};

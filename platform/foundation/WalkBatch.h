#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/FileRecord.h"

#include <QString>

#include <memory>
#include <string_view>
#include <vector>

/// Entries that a walk has found one after the other, to be made into records by whichever thread
/// is free. One thread at a time.
class WalkBatch
{
public:
    /// What follows lies in this folder.
    /// @param path ends in a slash.
    void addFolder(std::shared_ptr<const FileDescriptor> folder, const QString &path);
    /// Only once there is a folder.
    /// @param isFolder whether the folder lists it as one.
    void add(std::string_view name, bool isFolder);

    size_t folderCount() const { return m_folders.size(); }
    size_t entryCount() const { return m_entryCount; }

    /// Asks the file system for the sizes. An entry that is gone by then, or a folder after all,
    /// gets no record; one that cannot be asked gets a record without a size, unless it is listed
    /// as a folder.
    void makeRecords() noexcept;

    /// What was made, in the order of the entries. Throws what making them threw.
    FileRecords &records();
    void clear();

private:
    struct Folder
    {
        std::shared_ptr<const FileDescriptor> folder;
        QString path;
        size_t namesEnd = 0;
    };

    void makeRecords(const Folder &folder, size_t &position);

    std::vector<Folder> m_folders;
    std::vector<char> m_names; ///< each behind whether it is a folder's, and ended by a zero
    size_t m_entryCount = 0;
    FileRecords m_records;
    std::exception_ptr m_failure;
};

#pragma once

#include <QMetaType>
#include <QString>

#include <optional>
#include <vector>

/// A file that an enumeration found.
struct FileRecord
{
    QString path;               ///< full path, as FilePath writes it
    std::optional<qint64> size; ///< bytes; nothing when the file system reports none

    friend bool operator==(const FileRecord &, const FileRecord &) = default;
};

using FileRecords = std::vector<FileRecord>;

Q_DECLARE_METATYPE(FileRecord)

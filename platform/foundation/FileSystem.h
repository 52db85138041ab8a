#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

/// What a file system says of an item itself, links not followed.
struct FileAttributes
{
    enum Type { RegularFile, Folder, Link, Other };

    Type type = RegularFile;
    std::optional<qint64> size; ///< bytes; nothing when the file system reports none
};

/// A file that is being written, from its start. Closed by its end at the latest. One thread.
class FileWriter
{
public:
    virtual ~FileWriter() = default;
    /// All of it, behind what was written before.
    virtual bool write(QByteArrayView bytes) = 0;
    /// Answers whether all that was written has reached the disk.
    virtual bool synchronize() = 0;
    virtual bool close() = 0;
};

/// An item by its name in a folder that was looked up once and is held: whatever takes the place of
/// that folder or of those above, every call reaches what has the name in this very one. Links on
/// the way count as they stood then; one that has the name itself is never followed. Where the way
/// led nowhere every call fails. One thread.
class HeldItem
{
public:
    virtual ~HeldItem() = default;

    virtual std::optional<FileAttributes> attributes() const = 0;
    /// A file, a link itself or an empty folder, as the C library's remove().
    virtual bool remove() = 0;
    /// As ::removeTree().
    virtual bool removeTree() = 0;
    /// Makes a file of this content where nothing may have the name, not even a link, and which its
    /// owner alone may read; to write over the content from its start. Whatever takes the file's
    /// name meanwhile, a link to another for one, is not written to. Null when it could not be
    /// made.
    virtual std::unique_ptr<FileWriter> create(QByteArrayView content) = 0;
};

/// Files by path, written as FilePath writes them and of any length. False or nothing tells that a
/// step failed. Nothing throws. Any thread.
class FileSystem
{
public:
    virtual ~FileSystem() = default;

    /// Nothing for a missing item, or one that may not be looked at.
    virtual std::optional<FileAttributes> attributes(const QString &path) const = 0;
    /// Whether there is something at the end of all links.
    virtual bool exists(const QString &path) const = 0;

    /// The item, for what takes several steps. Never null.
    virtual std::unique_ptr<HeldItem> hold(const QString &path) = 0;

    /// The whole content of a regular file, or of one that a link leads to, of at most so many
    /// bytes; nothing for anything else. Waits for no writer.
    virtual std::optional<QByteArray> readFile(const QString &path, qsizetype limit) const = 0;
    /// Makes the content a regular file's own, links followed; a failure may leave a part. Anything
    /// that is there but no regular file is left alone, and no reader waited for.
    virtual bool writeFile(const QString &path, QByteArrayView content) = 0;
    /// Puts a regular file of this content in the place of a file, of a link itself or of nothing.
    /// A failure leaves what was there, whole, and nothing beside it. Only where the folder keeps
    /// its entries to others is the file itself written to, as by writeFile().
    virtual bool replaceFile(const QString &path, QByteArrayView content) = 0;
};

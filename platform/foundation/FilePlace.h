#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <fcntl.h>

/// A path in the form that system calls take, whatever its length: a folder and a shorter path from
/// there. Any thread.
class FilePlace
{
public:
    /// As the system would find the path, links on the way included. A path that leads nowhere or
    /// can be no file's gives a place where nothing is.
    static FilePlace of(const QString &path);

    /// The item's own folder and name, slashes at the end left away; for calls that must not look
    /// the way up twice. For a path without a name of its own ("/", "..", ".") a place where
    /// nothing is.
    static FilePlace inFolder(const QString &path);

    /// For the "at" calls: the item's own folder after inFolder(), else AT_FDCWD where the path
    /// alone will do.
    int folder() const { return m_folder.isOpen() ? m_folder.number() : AT_FDCWD; }
    /// Empty where nothing is, which the "at" calls answer with ENOENT.
    const char *path() const { return m_path.constData(); }
    bool isNowhere() const { return m_path.isEmpty(); }

private:
    FileDescriptor m_folder;
    QByteArray m_path;
};

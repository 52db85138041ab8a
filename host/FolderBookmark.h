#pragma once

#include <QByteArray>
#include <QUrl>

/// A folder as data that can be stored: its address as a file URL (RFC 8089). Any thread.
namespace FolderBookmark {

/// Empty when there is no such folder.
QByteArray make(const QString &path);

/// The folder, for as long as it exists; an empty URL for one that is gone and for data of any
/// other kind.
QUrl resolve(const QByteArray &bookmark);

} // namespace FolderBookmark

#include "host/FolderBookmark.h"

#include <QFileInfo>

namespace FolderBookmark {

QByteArray make(const QString &path)
{
    return QFileInfo(path).isDir() ? QUrl::fromLocalFile(path).toEncoded() : QByteArray();
}

QUrl resolve(const QByteArray &bookmark)
{
    const QUrl address = QUrl::fromEncoded(bookmark, QUrl::StrictMode);
    const bool isThere = address.isLocalFile() && QFileInfo(address.toLocalFile()).isDir();
    return isThere ? address : QUrl();
}

} // namespace FolderBookmark

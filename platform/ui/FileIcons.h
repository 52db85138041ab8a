#pragma once

#include <QImage>
#include <QString>

/// The desktop's icons of files, as Workspace describes them: an application's and a bundle's own,
/// a desktop entry's, and for everything else the icon theme's by the type of the file
/// (shared-mime-info, XDG icon names). Where the theme has none, ours from the main
/// bundle's resources.
namespace FileIcons {

/// Sizes below 1 give a null image, those above IconImage::largestSize count as that.
QImage ofFile(const QString &path, int size);
QImage ofType(const QString &type, int size);

} // namespace FileIcons

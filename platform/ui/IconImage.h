#pragma once

#include <QImage>
#include <QString>

/// Icons as images that stand on dense screens too: two pixels to a point. Any thread.
namespace IconImage {

constexpr int devicePixelRatio = 2;
constexpr int largestSize = 1024; ///< points; a larger icon is made no larger

/// The picture, undistorted, in the middle of a square of that many points. Null without a picture,
/// and for sizes below 1.
QImage square(const QImage &picture, int size);

/// An image file in such a square; null when it cannot be read. Only a regular file is, and neither
/// one that is very large nor one that says it holds a very large picture. Of a file that holds an
/// icon in several sizes the fitting one is taken.
QImage read(const QString &path, int size);

} // namespace IconImage

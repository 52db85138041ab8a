#pragma once

#include <QImage>
#include <QSizeF>

/// Images as they stand on a Touch Bar. Every result is a copy; null in, null out. Any thread.
namespace TouchBarImages {

/// White at that opacity over whatever is opaque; what is transparent stays so.
QImage tinted(const QImage &image, float alpha);

/// Stretched over the size, in points, with at least two pixels to a point. Null for an empty size
/// too, and an image that is no image is told to the system log.
QImage resized(const QImage &image, const QSizeF &size);

/// In shades of grey, as the image looks over black, with its own transparency.
QImage grey(const QImage &image);

/// The image's pixels, one to a point.
QImage bitmap(const QImage &image);
/// A bitmap's pixels as an image of as many points.
QImage imageFromBitmap(const QImage &bitmap);

} // namespace TouchBarImages

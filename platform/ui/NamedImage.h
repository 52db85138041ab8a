#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

/// Images of the main bundle's resources, by name. Main thread.
namespace NamedImage {

/// The image drawn for the size in points and the device-pixel ratio; null when there is none of
/// that name (SVG or PNG).
QPixmap pixmap(const QString &name, QSize size, qreal devicePixelRatio);

} // namespace NamedImage

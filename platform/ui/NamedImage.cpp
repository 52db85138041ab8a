#include "platform/ui/NamedImage.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/SystemServices.h"

#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace NamedImage {

QPixmap pixmap(const QString &name, QSize size, qreal devicePixelRatio)
{
    const QSize pixels = (QSizeF(size) * devicePixelRatio).toSize();
    QPixmap image;
    // Drawn directly: reading an SVG as an image file would load every image-format plugin first.
    if (QSvgRenderer drawing(systemServices().mainBundle->pathForResource(name, u"svg"_s));
        drawing.isValid()) {
        image = QPixmap(pixels);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    } else if (const QString path = systemServices().mainBundle->pathForResource(name, u"png"_s);
               !path.isNull()) {
        image = QPixmap(path).scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

} // namespace NamedImage

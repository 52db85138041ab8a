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
    const Bundle &bundle = *systemServices().mainBundle;
    QPixmap image;
    if (const QString path = bundle.pathForResource(name, u"svg"_s); !path.isNull()) {
        // Drawn directly: reading an SVG as an image file would load every image-format plugin
        // first.
        QSvgRenderer drawing(path);
        image = QPixmap(pixels);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    } else if (const QString other = bundle.pathForResource(name, u"png"_s); !other.isNull()) {
        image = QPixmap(other).scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

} // namespace NamedImage

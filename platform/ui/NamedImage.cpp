#include "platform/ui/NamedImage.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/SystemServices.h"

#include <QImageReader>

using namespace Qt::StringLiterals;

namespace NamedImage {

QPixmap pixmap(const QString &name, QSize size, qreal devicePixelRatio)
{
    for (const QString &type : {u"svg"_s, u"png"_s}) {
        const QString path = systemServices().mainBundle->pathForResource(name, type);
        if (path.isNull())
            continue;
        QImageReader reader(path);
        reader.setScaledSize((QSizeF(size) * devicePixelRatio).toSize());
        QPixmap image = QPixmap::fromImage(reader.read());
        image.setDevicePixelRatio(devicePixelRatio);
        return image;
    }
    return {};
}

} // namespace NamedImage

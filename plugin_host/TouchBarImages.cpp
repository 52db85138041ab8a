#include "plugin_host/TouchBarImages.h"

#include "platform/foundation/SystemServices.h"
#include "platform/ui/IconImage.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace TouchBarImages {

namespace {

constexpr auto format = QImage::Format_ARGB32_Premultiplied;

/// Pixel for pixel, whatever the image's density.
void drawPixels(QImage &onto, const QImage &image)
{
    QPainter painter(&onto);
    painter.drawImage(onto.rect(), image, image.rect());
}

} // namespace

QImage tinted(const QImage &image, float alpha)
{
    if (image.isNull())
        return {};
    QImage copy = image.convertToFormat(format);
    QPainter painter(&copy);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(QRectF(QPointF(), copy.deviceIndependentSize()),
                     QColor::fromRgbF(1, 1, 1, std::clamp(alpha, 0.0F, 1.0F)));
    return copy;
}

QImage resized(const QImage &image, const QSizeF &size)
{
    if (image.isNull()) {
        systemServices().systemLog->write(u"Invalid Image"_s);
        return {};
    }
    if (size.isEmpty())
        return {};
    const qreal ratio = std::max<qreal>(image.devicePixelRatio(), IconImage::devicePixelRatio);
    QImage scaled = image.convertToFormat(format).scaled(
        (size * ratio).toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    return scaled;
}

QImage grey(const QImage &image)
{
    if (image.isNull())
        return {};
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::black);
    drawPixels(result, image);
    result.convertTo(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(result.scanLine(y));
        std::transform(pixels, pixels + result.width(), pixels, [](QRgb pixel) {
            const int shade = qGray(pixel); // not what Qt makes of it: that is by linear light
            return qRgb(shade, shade, shade);
        });
    }
    result.setAlphaChannel(image.convertToFormat(QImage::Format_Alpha8));
    result.setDevicePixelRatio(image.devicePixelRatio());
    return result;
}

QImage bitmap(const QImage &image)
{
    QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    pixels.setDevicePixelRatio(1);
    return pixels;
}

QImage imageFromBitmap(const QImage &bitmap)
{
    if (bitmap.isNull())
        return {};
    QImage image(bitmap.size(), format);
    image.fill(Qt::transparent);
    drawPixels(image, bitmap);
    return image;
}

} // namespace TouchBarImages

#include "platform/ui/IconImage.h"

#include "platform/foundation/RegularFile.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace IconImage {

namespace {

constexpr qsizetype largestFile = 32 * 1024 * 1024;
constexpr qsizetype largestPacked = 64 * 1024;      // of a drawing: unpacked, a thousand times that
constexpr qint64 largestPicture = 32 * 1024 * 1024; // pixels
constexpr int largestFamily = 64;

int pixelsOf(int size)
{
    return std::min(size, largestSize) * devicePixelRatio;
}

bool isHarmless(const QByteArray &data)
{
    return !data.startsWith("\x1f\x8b") || data.size() <= largestPacked;
}

/// One picture of the file, not much larger than needed where its format allows.
QImage readPicture(QImageReader &reader, int pixels)
{
    const QSize size = reader.size();
    const bool isDrawing = reader.format().startsWith("svg");
    if (!isDrawing && qint64(size.width()) * size.height() > largestPicture)
        return {};
    const bool isLarger = size.width() > pixels || size.height() > pixels;
    if (!size.isEmpty() && (isDrawing || isLarger)) {
        reader.setScaledSize(
            size.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    return reader.read();
}

/// The smallest picture of the family that need not be enlarged, or else the largest.
QImage readFamily(QImageReader &reader, int pixels)
{
    QImage best;
    for (int i = 0; i < std::min(reader.imageCount(), largestFamily); ++i) {
        if (!reader.jumpToImage(i))
            break;
        const QImage picture = reader.read();
        const bool isBetter = best.width() < pixels
            ? picture.width() > best.width()
            : picture.width() >= pixels && picture.width() < best.width();
        if (isBetter)
            best = picture;
    }
    return best;
}

} // namespace

QImage square(const QImage &picture, int size)
{
    if (picture.isNull() || size < 1)
        return {};
    const int pixels = pixelsOf(size);
    QImage square(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    const QSize fitting =
        picture.size().scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    QImage scaled = picture.scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(1);
    {
        QPainter painter(&square);
        painter.drawImage((pixels - fitting.width()) / 2, (pixels - fitting.height()) / 2, scaled);
    }
    square.setDevicePixelRatio(devicePixelRatio);
    return square;
}

QImage read(const QString &path, int size)
{
    const QByteArray data = RegularFile::read(path, largestFile).valueOr({});
    if (data.isEmpty() || size < 1 || !isHarmless(data))
        return {};
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const bool isFamily = reader.format() == "icns" || reader.format() == "ico";
    return square(
        isFamily ? readFamily(reader, pixelsOf(size)) : readPicture(reader, pixelsOf(size)), size);
}

} // namespace IconImage

#include "platform/ui/OutlineViewCell.h"

#include <QFontMetricsF>

#include <cmath>

qreal OutlineViewCell::naturalHeight() const
{
    switch (kind) {
    case Text:
        return std::ceil(QFontMetricsF(font).height());
    case Image:
        return image.deviceIndependentSize().height();
    case Custom:
        break;
    }
    return 0;
}

qreal OutlineViewCell::heightInFrame(const QRectF &baseFrame) const
{
    if (kind != Custom)
        return naturalHeight();
    return heightInBounds ? heightInBounds(baseFrame) : baseFrame.height();
}

QString OutlineViewCell::elidedText(qreal width) const
{
    // Font measures are fractions: a text in a frame of just its width is whole.
    return QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, width - endMargin + 0.5);
}

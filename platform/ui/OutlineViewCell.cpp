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
    QString elided = QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, width - endMargin + 0.5);
    // The toolkit may cut in the middle of a character.
    for (qsizetype i = elided.size() - 1; elided != text && i >= 0; --i) {
        if (elided[i].isLowSurrogate() && i > 0 && elided[i - 1].isHighSurrogate())
            --i;
        else if (elided[i].isSurrogate())
            elided.remove(i, 1);
    }
    return elided;
}

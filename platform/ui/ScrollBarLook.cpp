#include "platform/ui/ScrollBarLook.h"

#include <QPainter>
#include <QStyleOptionSlider>

#include <algorithm>

namespace {

constexpr int shortestThumb = 28;
constexpr int thumbMargin = 3;

/// What lies between two points along the bar.
QRect stretch(const QStyleOptionSlider &bar, int begin, int end)
{
    const QRect &whole = bar.rect;
    return bar.orientation == Qt::Horizontal
        ? QRect(whole.left() + begin, whole.top(), end - begin, whole.height())
        : QRect(whole.left(), whole.top() + begin, whole.width(), end - begin);
}

} // namespace

namespace ScrollBarLook {

QRect partRect(const QStyleOptionSlider &bar, QStyle::SubControl part)
{
    const int length = bar.orientation == Qt::Horizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    const auto share =
        int(length * qint64(bar.pageStep) / std::max<qint64>(range + bar.pageStep, 1));
    const int thumb = range > 0 ? std::min(std::max(share, shortestThumb), length) : length;
    const int begin = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - thumb, bar.upsideDown);
    QRect rect;
    if (part == QStyle::SC_ScrollBarGroove)
        rect = bar.rect;
    else if (part == QStyle::SC_ScrollBarSlider)
        rect = stretch(bar, begin, begin + thumb);
    else if (part == QStyle::SC_ScrollBarSubPage)
        rect = stretch(bar, 0, begin);
    else if (part == QStyle::SC_ScrollBarAddPage)
        rect = stretch(bar, begin + thumb, length);
    return QStyle::visualRect(bar.direction, bar.rect, rect);
}

void draw(const QStyleOptionSlider &bar, QPainter &painter)
{
    painter.fillRect(bar.rect, bar.palette.color(QPalette::Base));
    if (!(bar.state & QStyle::State_Enabled) || bar.maximum <= bar.minimum)
        return;
    const QRectF thumb = QRectF(partRect(bar, QStyle::SC_ScrollBarSlider))
                             .adjusted(thumbMargin, thumbMargin, -thumbMargin, -thumbMargin);
    const bool isHeld = (bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken))
        && bar.activeSubControls & QStyle::SC_ScrollBarSlider;
    const qreal radius = std::min(thumb.width(), thumb.height()) / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(bar.palette.color(QPalette::Button).darker(isHeld ? 130 : 100));
    painter.drawRoundedRect(thumb, radius, radius);
    painter.restore();
}

} // namespace ScrollBarLook

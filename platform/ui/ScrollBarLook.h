#pragma once

#include <QStyle>

class QPainter;
class QStyleOptionSlider;

/// Scroll bars as a quiet rounded thumb on a light ground, without arrows.
namespace ScrollBarLook {

/// Empty for the parts there are none of.
QRect partRect(const QStyleOptionSlider &bar, QStyle::SubControl part);
void draw(const QStyleOptionSlider &bar, QPainter &painter);

} // namespace ScrollBarLook

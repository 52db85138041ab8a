#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QRectF>
#include <QString>

#include <functional>

class QPainter;

/// How one row of an outline view shows its value. Made anew for every drawing of the row.
struct OutlineViewCell
{
    enum Kind { Text, Image, Custom };

    Kind kind = Text;
    QString text;
    QFont font;
    QColor textColor;         ///< Unselected rows.
    QColor selectedTextColor; ///< Selected rows.
    qreal endMargin = 0;      ///< Text cells: kept free behind a text that fills the frame.
    QImage image;             ///< Image cells; drawn at its own size.

    /// Custom cells: the height wanted within the bounds, and the painting. Either may be missing.
    std::function<qreal(const QRectF &bounds)> heightInBounds;
    std::function<void(QPainter *painter, const QRectF &frame, bool isSelected)> draw;

    /// Called with a left press inside the cell's frame when the row is selected already, or when
    /// the delegate lets the cell be tracked.
    std::function<void(const QPointF &position)> pressed;

    /// Height of a text or image cell by itself, in device-independent pixels; 0 for a custom one.
    qreal naturalHeight() const;

    /// The height to give the cell in the base frame: its natural one, or what it wants in there.
    qreal heightInFrame(const QRectF &baseFrame) const;

    /// The text as it fits into the width: whole, or with its middle left out.
    QString elidedText(qreal width) const;
};

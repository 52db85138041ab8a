#pragma once

#include <QRectF>
#include <QSizeF>

/// Where the parts of a source list's row stand: pure arithmetic, in device-independent pixels.
namespace SourceListGeometry {

/// What the text cell's frame is computed from.
struct Row
{
    QRectF rect;      ///< The whole row.
    QRectF baseFrame; ///< The text cell's frame in a plain outline view.
    int level = 0;
    qreal indentationPerLevel = 0;
    bool isAlwaysExpanded = false; ///< A heading that cannot be closed.
    bool hasIcon = false;
    QSizeF iconSize;
    qreal badgeWidth = 0; ///< 0 without a badge.
    qreal cellHeight = 0; ///< The height that the text needs.
};

/// @param textWidth the width of the badge's number.
QSizeF badgeSize(qreal textWidth);

/// At the right end of the row, in the middle of its height.
QRectF badgeRect(const QRectF &row, const QSizeF &badge);

/// Rows of level 0 are headings, all others entries.
QRectF textCellFrame(const Row &row);

/// The frame of the disclosure triangle, from that in a plain outline view.
QRectF outlineCellFrame(const QRectF &baseFrame, int level, qreal indentationPerLevel,
                        bool isAlwaysExpanded);

QRectF iconRect(const QRectF &textCell, const QSizeF &iconSize);

/// Where an image is drawn: in its own size when it is smaller than the icon's rectangle in either
/// dimension, over the rectangle otherwise.
QRectF imageRect(const QRectF &icon, const QSizeF &image);

/// The size cut down in proportion to the height of a row.
QSizeF fittedIconSize(const QSizeF &size, qreal rowHeight);

} // namespace SourceListGeometry

#include "sourcelist/SourceListGeometry.h"

#include <algorithm>

namespace SourceListGeometry {

namespace {

constexpr qreal entryTextMargin = 18;
constexpr qreal iconSpace = 6; // beyond the icon's width, half of it on either side
constexpr qreal iconToText = 3;
constexpr qreal alwaysExpandedHeadingX = 7;
constexpr qreal badgeMargin = 10;
constexpr qreal badgeHeight = 17;
constexpr qreal badgeMinimumWidth = 22;
constexpr qreal badgeTextPadding = 20;

} // namespace

QSizeF badgeSize(qreal textWidth)
{
    return {std::max(badgeMinimumWidth, textWidth + badgeTextPadding), badgeHeight};
}

QRectF badgeRect(const QRectF &row, const QSizeF &badge)
{
    return {
        QPointF(row.right() - badge.width() - badgeMargin, row.center().y() - badge.height() / 2),
        badge};
}

QRectF textCellFrame(const Row &row)
{
    if (row.level > 0) {
        qreal x = row.level * row.indentationPerLevel + entryTextMargin;
        if (row.hasIcon)
            x += row.iconSize.width() + iconSpace;
        // The margin of the badge is kept free even where there is none, so that titles end in
        // line.
        return {x, row.rect.center().y() - row.cellHeight / 2,
                row.rect.width() - (row.badgeWidth + badgeMargin) - x, row.cellHeight};
    }
    const qreal x = row.isAlwaysExpanded ? alwaysExpandedHeadingX : row.baseFrame.x();
    return {x, row.baseFrame.center().y() - row.cellHeight / 2, row.rect.width() - x,
            row.cellHeight};
}

QRectF outlineCellFrame(const QRectF &baseFrame, int level, qreal indentationPerLevel,
                        bool isAlwaysExpanded)
{
    if (isAlwaysExpanded)
        return {};
    QRectF frame = baseFrame;
    if (level > 0)
        frame.moveLeft(level * indentationPerLevel);
    return frame;
}

QRectF iconRect(const QRectF &textCell, const QSizeF &iconSize)
{
    return {QPointF(textCell.x() - iconSize.width() - iconToText,
                    textCell.center().y() - iconSize.height() / 2),
            iconSize};
}

QRectF imageRect(const QRectF &icon, const QSizeF &image)
{
    if (image.width() >= icon.width() && image.height() >= icon.height())
        return icon;
    QRectF rect(QPointF(), image);
    rect.moveCenter(icon.center());
    return rect;
}

QSizeF fittedIconSize(const QSizeF &size, qreal rowHeight)
{
    if (size.height() <= rowHeight)
        return size;
    return {size.width() * (rowHeight / size.height()), rowHeight};
}

} // namespace SourceListGeometry

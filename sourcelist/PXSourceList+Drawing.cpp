#include "platform/ui/HostColors.h"
#include "sourcelist/PXSourceList.h"
#include "sourcelist/SourceListGeometry.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int badgeFontSize = 12;
constexpr int headingFontSize = 11;
constexpr qreal badgeRadius = 8.5;
constexpr qreal textToBadge = 6;
constexpr qreal shortTitle = 72; // what remains of a longer one can still be read

const QColor badgeFill(152, 168, 202);
const QColor hiddenWindowBadgeFill(180, 180, 180);
const QColor hiddenWindowSelectedBadgeText(170, 170, 170);
const QColor unfocusedSelectedBadgeText(153, 169, 203); // red is 0.6 of 255

QFont badgeFont(const QFont &base)
{
    QFont font = base;
    font.setBold(true);
    font.setPixelSize(badgeFontSize);
    return font;
}

/// Edges between two device pixels would be blurred.
QRectF onWholePixels(const QRectF &rect, qreal ratio)
{
    const auto whole = [ratio](const QPointF &corner) {
        return QPointF(std::round(corner.x() * ratio), std::round(corner.y() * ratio)) / ratio;
    };
    return {whole(rect.topLeft()), whole(rect.bottomRight())};
}

} // namespace

QSizeF PXSourceList::sizeOfBadgeAtRow(int row)
{
    OutlineItem item = itemAtRow(row);
    if (!item || !itemHasBadge(item))
        return {0, 0};
    const QFontMetricsF metrics(badgeFont(font()));
    return SourceListGeometry::badgeSize(
        metrics.horizontalAdvance(QString::number(badgeValueForItem(item))));
}

QRectF PXSourceList::frameOfOutlineCellAtRow(int row)
{
    return inViewDirection(SourceListGeometry::outlineCellFrame(
        baseFrameOfOutlineCell(row), levelForRow(row), indentationPerLevel(),
        isGroupAlwaysExpanded(itemAtRow(row))));
}

QRectF PXSourceList::frameOfCellAtColumn(int column, int row)
{
    return column == 0 ? inViewDirection(leftToRightTextFrame(row)) : QRectF();
}

QRectF PXSourceList::leftToRightTextFrame(int row)
{
    OutlineItem item = itemAtRow(row);
    if (!item)
        return {};
    SourceListGeometry::Row geometry;
    geometry.rect = rectOfRow(row);
    geometry.baseFrame = baseFrameOfCell(row);
    geometry.level = levelForItem(item);
    geometry.indentationPerLevel = indentationPerLevel();
    geometry.isAlwaysExpanded = isGroupAlwaysExpanded(item);
    geometry.hasIcon = source() && source()->sourceListItemHasIcon(this, item);
    geometry.iconSize = _iconSize;
    geometry.badgeWidth = sizeOfBadgeAtRow(row).width();
    geometry.cellHeight = preparedCellAtRow(row).heightInFrame(geometry.baseFrame);
    return SourceListGeometry::textCellFrame(geometry);
}

int PXSourceList::widthForBadges()
{
    qreal width = 0;
    for (int row = 0; row < numberOfRows(); ++row) {
        if (!itemHasBadge(itemAtRow(row)))
            continue;
        const OutlineViewCell cell = preparedCellAtRow(row);
        const qreal title =
            std::min(shortTitle, QFontMetricsF(cell.font).horizontalAdvance(cell.text));
        const qreal others = rectOfRow(row).width() - leftToRightTextFrame(row).width();
        width = std::max(width, others + title + cell.endMargin);
    }
    return width > 0 ? int(std::ceil(width)) + this->width() - viewport()->width() : 0;
}

OutlineViewCell PXSourceList::dataCellForRow(int row)
{
    OutlineViewCell cell = OutlineView::dataCellForRow(row);
    OutlineItem item = itemAtRow(row);
    if (item && itemHasBadge(item))
        cell.endMargin = textToBadge;
    if (isGroupItem(item)) {
        cell.font.setPixelSize(headingFontSize);
        cell.font.setBold(true);
        cell.textColor = HostColors::sidebarHeading;
    }
    return cell;
}

void PXSourceList::drawRow(int row, QPainter *painter, const QRectF &clip)
{
    OutlineView::drawRow(row, painter, clip);
    OutlineItem item = itemAtRow(row);
    if (!item)
        return;
    painter->save();
    painter->setClipRect(clip, Qt::IntersectClip);
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!isGroupItem(item) && source() && source()->sourceListItemHasIcon(this, item))
        drawIcon(row, painter);
    const QSizeF badge = sizeOfBadgeAtRow(row);
    if (!badge.isEmpty())
        drawBadgeForRow(
            row,
            onWholePixels(inViewDirection(SourceListGeometry::badgeRect(rectOfRow(row), badge)),
                          painter->device()->devicePixelRatioF()),
            painter);
    painter->restore();
}

void PXSourceList::drawIcon(int row, QPainter *painter)
{
    OutlineItem item = itemAtRow(row);
    QImage image;
    if (isRowSelected(row))
        image = source()->sourceListIconForItemSelected(this, item);
    if (image.isNull())
        image = source()->sourceListIconForItem(this, item);
    if (image.isNull())
        return;
    const QRectF icon =
        inViewDirection(SourceListGeometry::iconRect(leftToRightTextFrame(row), _iconSize));
    const QRectF rect = SourceListGeometry::imageRect(icon, image.deviceIndependentSize());
    const qreal ratio = painter->device()->devicePixelRatioF();
    // Whole device pixels keep small icons crisp.
    const QPointF corner(std::round(rect.x() * ratio) / ratio,
                         std::round(rect.y() * ratio) / ratio);
    const QRectF aligned(corner, rect.size());
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter->setOpacity(1);
    const QPixmap scaled = scaledIcon(row, image, (rect.size() * ratio).toSize());
    painter->drawPixmap(aligned, scaled, QRectF(scaled.rect()));
}

/// Smooth scaling of a large icon is slow work, and rows are drawn often. Each row keeps the one
/// icon that it shows: plugins may change theirs as often as they like.
QPixmap PXSourceList::scaledIcon(int row, const QImage &image, const QSize &pixels)
{
    ScaledIcon &kept = _scaledIcons[row];
    if (kept.imageKey != image.cacheKey() || kept.pixmap.size() != pixels) {
        kept = {image.cacheKey(),
                QPixmap::fromImage(
                    image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))};
    }
    return kept.pixmap;
}

bool PXSourceList::isWindowVisible() const
{
    return window()->isVisible() && !window()->isMinimized();
}

bool PXSourceList::isFirstResponder() const
{
    return window()->focusWidget() == this;
}

void PXSourceList::drawBadgeForRow(int row, const QRectF &rect, QPainter *painter)
{
    OutlineItem item = itemAtRow(row);
    if (!item)
        return;
    QColor fill = Qt::white;
    QColor text = Qt::white;
    if (isRowSelected(row)) {
        // The inverse of an unselected badge, so that it stands out from the selection.
        if (!isWindowVisible())
            text = hiddenWindowSelectedBadgeText;
        else if (isFirstResponder() || editedRow() == row)
            text = palette().color(QPalette::Active, QPalette::Highlight);
        else
            text = unfocusedSelectedBadgeText;
    } else if (isWindowVisible()) {
        fill = source() ? source()->sourceListBadgeBackgroundColorForItem(this, item) : QColor();
        const QColor wanted =
            source() ? source()->sourceListBadgeTextColorForItem(this, item) : QColor();
        if (!fill.isValid())
            fill = badgeFill;
        if (wanted.isValid())
            text = wanted;
    } else {
        fill = hiddenWindowBadgeFill;
    }

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(rect, badgeRadius, badgeRadius);
    const QString value = QString::number(badgeValueForItem(item));
    painter->setFont(badgeFont(font()));
    painter->setPen(text);
    const QFontMetricsF metrics(painter->font());
    const QSizeF size(metrics.horizontalAdvance(value), metrics.height());
    const QPointF corner = rect.center() - QPointF(size.width() / 2, size.height() / 2);
    painter->drawText(QPointF(corner.x(), corner.y() + metrics.ascent()), value);
    painter->restore();
}

#pragma once

#include <QApplication>
#include <QPainter>
#include <QStyledItemDelegate>

#include <utility>

/// Draws the cells of any item view so that an image without a text stands where the cell is
/// aligned to, rather than always at its beginning. For models that put an AttributedString's parts
/// under Qt's roles, as TableViewModel does. Main thread.
class AttributedStringDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        if (!cell.text.isEmpty() || cell.icon.isNull()) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        const QIcon icon = std::exchange(cell.icon, QIcon());
        cell.features &= ~QStyleOptionViewItem::HasDecoration;
        const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
        const QRect room = cell.rect.adjusted(margin, 0, -margin, 0);
        const Qt::Alignment side = cell.displayAlignment & Qt::AlignHorizontal_Mask;
        const QRect place = QStyle::alignedRect(cell.direction, side | Qt::AlignVCenter,
                                                cell.decorationSize.boundedTo(room.size()), room);
        const bool isEnabled = cell.state & QStyle::State_Enabled;
        icon.paint(painter, place, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);
    }
};

#include "plugins/common/Look.h"

#include <QApplication>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollArea>
#include <QSvgRenderer>
#include <QVBoxLayout>

namespace look {

QFont font(double factor, QFont::Weight weight)
{
    QFont scaled = QApplication::font();
    // The font may be set in pixels, and then has no point size of its own.
    scaled.setPointSizeF(QFontInfo(scaled).pointSizeF() * factor);
    scaled.setWeight(weight);
    return scaled;
}

void setTextColor(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    widget->setPalette(palette);
}

void paintWhite(QWidget *widget)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

QWidget *addScrollingColumn(QWidget *view, const QString &name)
{
    paintWhite(view);
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);

    area->setAccessibleName(name);

    auto *page = new QWidget;
    auto *column = new QWidget;
    column->setMaximumWidth(columnWidth);
    auto *centred = new QHBoxLayout(page);
    centred->setContentsMargins(pageMargin, pageMargin, pageMargin, pageMargin);
    centred->addStretch(1);
    // The column takes all the width up to its maximum, and only then the stretches theirs.
    centred->addWidget(column, 1000);
    centred->addStretch(1);
    area->setWidget(page);
    page->setAutoFillBackground(false);

    auto *filling = new QVBoxLayout(view);
    filling->setContentsMargins(0, 0, 0, 0);
    filling->addWidget(area);
    return column;
}

QImage icon(const QString &svgPath, int points)
{
    QSvgRenderer renderer;
    if (!renderer.load(svgPath))
        return {};
    constexpr int pixelsPerPoint = 3;
    const int pixels = points * pixelsPerPoint;
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    image.setDevicePixelRatio(pixelsPerPoint);
    return image;
}

} // namespace look

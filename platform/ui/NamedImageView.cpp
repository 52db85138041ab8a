#include "platform/ui/NamedImageView.h"

#include "platform/ui/NamedImage.h"

#include <QPainter>

void NamedImageView::setImageName(const QString &name)
{
    m_imageName = name;
    m_image = {};
    update();
}

void NamedImageView::setImageSize(QSize size)
{
    m_imageSize = size;
    m_image = {};
    updateGeometry();
    update();
}

void NamedImageView::setSkyColor(const QColor &color)
{
    m_skyColor = color;
    update();
}

void NamedImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_skyColor.isValid()) {
        QLinearGradient sky(0, 0, 0, height());
        QColor below = m_skyColor;
        below.setAlpha(0);
        sky.setColorAt(0, m_skyColor);
        sky.setColorAt(1, below);
        painter.fillRect(rect(), sky);
    }
    if (m_image.isNull() || m_image.devicePixelRatioF() != devicePixelRatioF())
        m_image = NamedImage::pixmap(m_imageName, m_imageSize, devicePixelRatioF());
    painter.drawPixmap(
        QRect(QPoint((width() - m_imageSize.width()) / 2, (height() - m_imageSize.height()) / 2),
              m_imageSize),
        m_image);
}

#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>

/// Shows an image of the main bundle in its middle, drawn when it is first seen and anew for every
/// scale, so that it is always crisp. Main thread.
///
/// An ornament: assistive technology passes over it.
class NamedImageView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString imageName READ imageName WRITE setImageName)
    Q_PROPERTY(QSize imageSize READ imageSize WRITE setImageSize)
    Q_PROPERTY(QColor skyColor READ skyColor WRITE setSkyColor)

public:
    using QWidget::QWidget;

    /// As NamedImage takes it.
    QString imageName() const { return m_imageName; }
    void setImageName(const QString &name);
    QSize imageSize() const { return m_imageSize; } ///< points
    void setImageSize(QSize size);
    /// Fades from the top to the ground below; invalid for none.
    QColor skyColor() const { return m_skyColor; }
    void setSkyColor(const QColor &color);

    QSize sizeHint() const override { return m_imageSize; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_imageName;
    QSize m_imageSize{64, 64};
    QColor m_skyColor;
    QPixmap m_image;
};

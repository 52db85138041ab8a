#include "plugins/common/Look.h"

#include "SolvanePlugin.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QSvgRenderer>
#include <QVBoxLayout>

namespace {

class FirstPolish : public QObject
{
public:
    FirstPolish(QWidget *widget, std::function<void()> doIt)
        : QObject(widget)
        , m_doIt(std::move(doIt))
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *widget, QEvent *event) override
    {
        if (event->type() == QEvent::Polish) {
            widget->removeEventFilter(this);
            m_doIt();
            deleteLater();
        }
        return false;
    }

private:
    std::function<void()> m_doIt;
};

/// Shows where the keyboard is, as soon as it is used: nothing else on such a page would.
class ScrollingPage : public QScrollArea
{
public:
    using QScrollArea::QScrollArea;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QScrollArea::paintEvent(event);
        if (!hasFocus() || !window()->testAttribute(Qt::WA_KeyboardFocusChange))
            return;
        QPainter painter(viewport());
        constexpr int ringWidth = 2;
        painter.setPen(QPen(look::accent, ringWidth));
        painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
    }
    void focusInEvent(QFocusEvent *event) override
    {
        QScrollArea::focusInEvent(event);
        viewport()->update();
    }
    void focusOutEvent(QFocusEvent *event) override
    {
        QScrollArea::focusOutEvent(event);
        viewport()->update();
    }
};

} // namespace

namespace look {

QFont font(double factor, QFont::Weight weight)
{
    QFont scaled = QApplication::font();
    // A font set in pixels has no point size of its own; without any font installed, none has a
    // size.
    if (scaled.pointSizeF() > 0)
        scaled.setPointSizeF(scaled.pointSizeF() * factor);
    else if (scaled.pixelSize() > 0)
        scaled.setPixelSize(qRound(scaled.pixelSize() * factor));
    scaled.setWeight(weight);
    return scaled;
}

void whenPolished(QWidget *widget, std::function<void()> doIt)
{
    new FirstPolish(widget, std::move(doIt));
}

void setTextColor(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    widget->setPalette(palette);
}

void alignToLayout(QLabel *label)
{
    label->setAlignment(QStyle::visualAlignment(QGuiApplication::layoutDirection(), Qt::AlignLeft)
                        | Qt::AlignAbsolute | Qt::AlignVCenter);
}

QLabel *makeText(const QString &text, const QColor &color)
{
    auto *label = new QLabel;
    // Before the text comes: what looks like rich text would be read as such.
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    setTextColor(label, color);
    return label;
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
    auto *area = new ScrollingPage(view);
    // Without a layout, which would measure all of the page as soon as it is chosen.
    FillsParent::install(area);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);

    area->setAccessibleName(name);
    // Tab stops at it only where there is something to scroll.
    area->setFocusPolicy(Qt::NoFocus);
    QObject::connect(area->verticalScrollBar(), &QScrollBar::rangeChanged, area,
                     [area](int minimum, int maximum) {
                         area->setFocusPolicy(maximum > minimum ? Qt::StrongFocus : Qt::NoFocus);
                     });

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

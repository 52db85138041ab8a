#include "platform/ui/ProgressIndicator.h"

#include "platform/ui/HostColors.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int spokes = 12;
constexpr int stepMilliseconds = 80;
constexpr int usualSize = 16;

} // namespace

ProgressIndicator::ProgressIndicator(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

QSize ProgressIndicator::sizeHint() const
{
    return {usualSize, usualSize};
}

void ProgressIndicator::startAnimation()
{
    m_isAnimating = true;
    updateTimer();
}

void ProgressIndicator::stopAnimation()
{
    m_isAnimating = false;
    updateTimer();
}

void ProgressIndicator::updateTimer()
{
    const bool hasMotion =
        style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    const bool isSeen = isVisible() && !window()->isMinimized();
    if (!m_isAnimating || !isSeen || !hasMotion)
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start(stepMilliseconds, this);
}

/// A minimised window tells its children nothing, so that it has to be watched.
void ProgressIndicator::followWindow()
{
    QWidget *now = window() == this ? nullptr : window();
    if (now == m_window)
        return;
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = now;
    if (m_window)
        m_window->installEventFilter(this);
}

void ProgressIndicator::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    followWindow();
    updateTimer();
}

void ProgressIndicator::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    updateTimer();
}

void ProgressIndicator::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange || event->type() == QEvent::StyleChange)
        updateTimer();
}

bool ProgressIndicator::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange)
        updateTimer();
    return false;
}

void ProgressIndicator::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_step = (m_step + 1) % spokes;
    update();
}

void ProgressIndicator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal size = std::min({qreal(usualSize), qreal(width()), qreal(height())});
    painter.translate(width() / 2.0, height() / 2.0);
    painter.scale(size / usualSize, size / usualSize);
    for (int i = 0; i < spokes; ++i) {
        // The spoke at the step is the darkest, those behind it fade.
        const int age = (m_step - i + spokes) % spokes;
        QColor color = HostColors::spinner;
        color.setAlpha(255 - age * 18);
        painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 * i / spokes);
        painter.drawLine(QPointF(0, -4), QPointF(0, -6.5));
        painter.restore();
    }
}

#include "platform/ui/Slide.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int longest = 180; // milliseconds

} // namespace

Slide::Slide(QWidget *seen)
    : m_seen(seen)
{
    m_way.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_way, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_position = value.toReal();
        Q_EMIT moved();
    });
    connect(&m_way, &QVariantAnimation::finished, this, &Slide::arrived);
}

int Slide::duration() const
{
    if (!m_seen || !m_seen->isVisible() || m_seen->window()->isMinimized())
        return 0;
    const int wanted =
        m_seen->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, m_seen);
    return std::clamp(wanted, 0, longest);
}

void Slide::moveTo(qreal target)
{
    m_way.stop();
    const int time = qRound(duration() * std::abs(target - m_position));
    if (time == 0) {
        m_position = target;
        Q_EMIT moved();
        Q_EMIT arrived();
        return;
    }
    m_way.setStartValue(m_position);
    m_way.setEndValue(target);
    m_way.setDuration(time);
    m_way.start();
}

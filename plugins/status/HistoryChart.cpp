#include "HistoryChart.h"

#include "plugins/common/Look.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

HistoryChart::HistoryChart(const QColor &color)
    : ShareView(QAccessible::Chart)
    , m_color(color)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void HistoryChart::addSample(double share)
{
    if (m_samples.size() == std::size_t(capacity))
        m_samples.pop_front();
    setShare(share);
    m_samples.push_back(this->share());
    update(); // the line moves on, even where the share stays
}

void HistoryChart::clear()
{
    m_samples.clear();
    update();
}

QSize HistoryChart::sizeHint() const
{
    return {200, 64};
}

void HistoryChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing); // keeps lines alike at any scale
    constexpr double lineWidth = 1.6;
    constexpr double dotRadius = 2.2;
    const QRectF area = QRectF(rect()).adjusted(0, dotRadius, -dotRadius, -dotRadius);
    painter.setPen(QPen(look::hairline, 1));
    for (const double share : {0.0, 0.5, 1.0}) {
        const double y = std::floor(area.bottom() - share * area.height()) + 0.5;
        painter.drawLine(QPointF(area.left(), y), QPointF(rect().right() + 1, y));
    }
    if (m_samples.empty())
        return;

    const double step = area.width() / (capacity - 1);
    double x = area.right() - step * double(m_samples.size() - 1);
    const double left = x;
    QPolygonF line;
    for (const double sample : m_samples) {
        line << QPointF(x, area.bottom() - sample * area.height());
        x += step;
    }
    QPolygonF filled = line;
    filled << QPointF(area.right(), area.bottom()) << QPointF(left, area.bottom());
    QColor fill = m_color;
    fill.setAlphaF(0.12F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPolygon(filled);
    painter.setPen(QPen(m_color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(line);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawEllipse(line.last(), dotRadius, dotRadius);
}

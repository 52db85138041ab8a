#include "MeterCard.h"

#include "HistoryChart.h"

#include "plugins/common/ElidedLabel.h"
#include "plugins/common/Look.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

MeterCard::MeterCard(const QString &title, const QString &period, const QColor &color)
    : m_figure(new ElidedLabel)
    , m_remark(new ElidedLabel)
    , m_note(new ElidedLabel)
    , m_chart(new HistoryChart(color))
{
    auto *heading = new ElidedLabel;
    heading->setText(title);
    heading->setFont(look::font(1.0, QFont::DemiBold));
    auto *periodLabel = new ElidedLabel;
    periodLabel->setText(period);
    periodLabel->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    for (ElidedLabel *small : {periodLabel, m_note}) {
        small->setFont(look::font(0.9));
        look::setTextColor(small, look::secondaryText);
    }
    m_figure->setFont(look::font(2.0));
    m_figure->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    look::setTextColor(m_remark, look::secondaryText);
    m_remark->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    // The small text stands on the baseline of the large one.
    look::whenPolished(this, [this] {
        const int lift = m_figure->fontMetrics().descent() - m_remark->fontMetrics().descent();
        m_remark->setContentsMargins(0, 0, 0, lift);
    });

    auto *top = new QHBoxLayout;
    top->addWidget(heading, 1);
    top->addWidget(periodLabel, 1);
    auto *value = new QHBoxLayout;
    value->setSpacing(8);
    value->addWidget(m_figure);
    value->addWidget(m_remark, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(18, 16, 18, 16);
    column->setSpacing(8);
    column->addLayout(top);
    column->addLayout(value);
    column->addWidget(m_chart);
    column->addWidget(m_note);
    m_chart->setAccessibleName(title);
    m_chart->setAccessibleDescription(period);
}

void MeterCard::setValue(const QString &figure, const QString &remark, const QString &spoken)
{
    m_figure->setText(figure);
    m_remark->setText(remark);
    if (m_chart->accessibleName() != spoken)
        m_chart->setAccessibleName(spoken);
}

void MeterCard::setNote(const QString &note)
{
    m_note->setText(note);
}

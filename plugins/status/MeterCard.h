#pragma once

#include "plugins/common/Card.h"

class ElidedLabel;
class HistoryChart;
class QLabel;

/// A card with one live figure: title, value, history and a line of explanation.
class MeterCard : public Card
{
public:
    /// @param period what the chart's width stands for: "Last 2 minutes".
    MeterCard(const QString &title, const QString &period, const QColor &color);

    /// @param figure the large text: "12%".
    /// @param remark the small text beside it: "of 23.5 GB used".
    /// @param spoken both as one sentence for assistive technology.
    void setValue(const QString &figure, const QString &remark, const QString &spoken);
    void setNote(const QString &note);

    HistoryChart *chart() const { return m_chart; }

private:
    ElidedLabel *m_figure;
    ElidedLabel *m_remark;
    ElidedLabel *m_note;
    HistoryChart *m_chart;
};

#pragma once

#include "plugins/common/ShareView.h"

#include <QColor>

#include <deque>

/// The last samples of a share as a filled line that moves to the left.
class HistoryChart : public ShareView
{
public:
    static constexpr int capacity = 60;

    explicit HistoryChart(const QColor &color);

    /// @param share 0 to 1; what lies outside is drawn at the edge.
    void addSample(double share);
    void clear();
    qsizetype count() const { return qsizetype(m_samples.size()); }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
    std::deque<double> m_samples;
};

#pragma once

#include <QWidget>

/// A white panel with a thin rounded border that groups what belongs together.
class Card : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *event) override;
};

#pragma once

#include <QLabel>

/// A line of plain text that gives way when there is too little room: it is shortened with an
/// ellipsis, and the whole of it shows as a tool tip. Assistive technology reads the whole text.
class ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(Qt::TextElideMode mode = Qt::ElideRight);

    QSize minimumSizeHint() const override;
    bool isElided() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString shownText() const;

    Qt::TextElideMode m_mode;
};

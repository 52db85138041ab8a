#pragma once

#include <QBasicTimer>
#include <QPointer>
#include <QWidget>

/// A spinning wheel that says that something is being worked on.
///
/// Drawn about 16 pixels wide in the middle of whatever room it gets, smaller where there is less;
/// the mouse goes through it. A new one stands still. It turns only between startAnimation() and
/// stopAnimation(), and runs a timer only while it can be seen turning: not while it or its window
/// is hidden or minimised. Where the desktop asks for reduced motion it never turns. Main thread.
class ProgressIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget *parent = nullptr);

    void startAnimation();
    void stopAnimation();
    bool isAnimating() const { return m_isAnimating; }
    /// Whether its timer runs.
    bool isTurning() const { return m_timer.isActive(); }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followWindow();
    void updateTimer();

    QBasicTimer m_timer;
    QPointer<QWidget> m_window;
    bool m_isAnimating = false;
    int m_step = 0;
};

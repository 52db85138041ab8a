#pragma once

#include <QPointer>
#include <QVariantAnimation>

class QWidget;

/// A short way from one place to another, 0 to 1 and back: of sheets, drawers. Main thread.
///
/// Where the desktop asks for no animations, and while nobody can see the widget, it arrives at
/// once. No timer runs while it stands still.
class Slide : public QObject
{
    Q_OBJECT

public:
    /// @param seen what has to be on the screen for the way to be worth showing; not owned.
    explicit Slide(QWidget *seen);

    qreal position() const { return m_position; }
    void moveTo(qreal target);

Q_SIGNALS:
    void moved();
    void arrived();

private:
    int duration() const;

    QPointer<QWidget> m_seen;
    QVariantAnimation m_way;
    qreal m_position = 0;
};

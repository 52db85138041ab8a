#pragma once

#include "platform/foundation/Selector.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

/// A row of buttons that are one control, for dark grounds. A tap tells the target which segment it
/// was and leaves nothing selected behind.
///
/// Segments are reached with Tab and the arrow keys, pressed with Space or Return; a click leaves
/// the keyboard where it is. Main thread.
class SegmentedControl : public QWidget
{
    Q_OBJECT

public:
    enum Style {
        Joined,        ///< one body with lines between the segments
        Separated = 8, ///< a body for each
    };

    /// Images are drawn at their own size, texts in one line, cut off in the middle where there is
    /// no room; a cut text has a tool tip.
    /// @param target not owned; gets this control as the action's one argument. What it throws ends
    /// in the system log, and it may delete the control.
    SegmentedControl(const QList<QImage> &images, QObject *target, const Selector &action);
    SegmentedControl(const QStringList &labels, QObject *target, const Selector &action);

    void setSegmentStyle(Style style);
    Style segmentStyle() const { return m_style; }
    int segmentCount() const { return int(m_segments.size()); }
    /// The segment tapped last; -1 before the first tap.
    int selectedSegment() const { return m_selected; }

    QWidget *segment(int index) const;
    /// What assistive technology says for a segment, and its tool tip. A text names itself.
    void setSegmentName(int index, const QString &name);

private:
    class Segment;

    SegmentedControl(QObject *target, Selector action);
    void add(Segment *segment);
    void tapped(int index);

    QList<Segment *> m_segments; ///< children
    QPointer<QObject> m_target;
    Selector m_action;
    Style m_style = Joined;
    int m_selected = -1;
};

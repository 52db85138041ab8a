#pragma once

#include "platform/ui/TouchBar.h"

#include <QScrollArea>

class QHBoxLayout;
class QMainWindow;

/// Shows a Touch Bar at the foot of a window, on machines that have none: clicks are taps.
///
/// It shows the bar of the view that has the keyboard, or of the nearest one around it that has a
/// bar: of a sheet, say, and otherwise of the window itself. What does not fit scrolls; nothing is
/// left out. Main thread.
class TouchBarStrip : public QScrollArea
{
    Q_OBJECT

public:
    /// A strip at the foot of the window, below its content and its sheets. The window cannot
    /// become so low any more that the content would have less room than before.
    static TouchBarStrip *addTo(QMainWindow *window);

    /// Builds the items anew if another bar is in force, and shows none without a bar.
    void refresh();
    /// Null for none.
    TouchBar *bar() const { return m_bar; }
    /// The views of the bar's items, in order.
    const QList<QWidget *> &itemViews() const { return m_views; }

private:
    explicit TouchBarStrip(QMainWindow *window);
    TouchBar *barInForce(QWidget *focused) const;
    void show(TouchBar *bar);

    QHBoxLayout *m_row;
    QPointer<TouchBar> m_bar;
    QPointer<QWidget> m_keyboard; ///< what had it last, apart from the strip itself
    QList<QWidget *> m_views;
};

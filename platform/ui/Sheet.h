#pragma once

#include "platform/ui/BorrowedView.h"
#include "platform/ui/Slide.h"

#include <QPixmap>
#include <QPointer>
#include <QWidget>

/// Shows a view as a sheet: it slides from the top edge of the content it covers, over a dimmed
/// backdrop that takes the clicks. Focus stays inside, and the keys of what lies below do nothing;
/// assistive technology sees a modal dialog. Main thread.
///
/// Child of the content it covers. The view is borrowed (BorrowedView). A sheet whose view is
/// deleted, hidden or taken away ends by itself.
class Sheet : public QWidget
{
    Q_OBJECT

public:
    /// @param focusAfterwards gets the keyboard when the sheet has ended; null for nobody.
    Sheet(QWidget *view, QWidget *content, QWidget *focusAfterwards);

    /// Null when the sheet has ended.
    QWidget *view() const { return m_frame->view(); }
    QWidget *focusAfterwards() const { return m_focusAfterwards; }

    /// Gives the view back at once, hidden. What slides away afterwards is its picture; then the
    /// sheet deletes itself.
    void end();

Q_SIGNALS:
    /// The view is given back.
    void gaveBack();

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void layOut();
    void takeFocus();
    void keepFocus(QWidget *now);
    bool isBelow(const QObject *object) const;
    QRect card() const;

    BorrowedView *m_frame;
    QPointer<QWidget> m_focusAfterwards;
    QPointer<QWidget> m_lastFocus;
    QPixmap m_picture; ///< of the view, once it is given back
    QColor m_ground;
    Slide m_slide;
    bool m_hasEnded = false;
};

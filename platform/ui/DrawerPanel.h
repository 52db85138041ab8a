#pragma once

#include "platform/ui/BorrowedView.h"
#include "platform/ui/EdgeDrawer.h"
#include "platform/ui/Slide.h"

#include <QPointer>
#include <QWidget>

/// What one sees of an EdgeDrawer. Child of the content it slides over. Main thread.
class DrawerPanel : public QWidget
{
    Q_OBJECT

public:
    DrawerPanel(QWidget *content, QWidget *area, EdgeDrawer::Edge edge);

    void open();
    void close();
    bool isOpen() const { return m_isOpen; }
    /// Gives the content back and deletes itself, now out of sight and a moment later in truth.
    void discard();

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void layOut();
    void giveFocusBack();
    bool isUpright() const { return m_edge == EdgeDrawer::Left || m_edge == EdgeDrawer::Right; }

    BorrowedView *m_frame;
    QSize m_contentSize; ///< for good: later sizes of the content scroll in it
    EdgeDrawer::Edge m_edge;
    Slide m_slide;
    QPointer<QWidget> m_focusBefore;
    bool m_isOpen = false;
};

#pragma once

#include "platform/ui/Drawer.h"

#include <QPointer>

class DrawerPanel;
class MainWindow;
class QWidget;

/// A drawer of the main window: a panel that slides from one of its edges over the content, where
/// it is never off the screen. Main thread.
///
/// The content is borrowed (BorrowedView) for as long as the drawer lives, and keeps its size. A
/// drawer whose content or window is gone opens nothing.
class EdgeDrawer : public Drawer
{
    Q_OBJECT

public:
    enum Edge : quint64 { Left = 0, Bottom = 1, Right = 2, Top = 3 };

    /// Unopened.
    /// @param content null, like one that holds the window, for an empty drawer.
    /// @param edge anything but the four counts as Right.
    EdgeDrawer(QWidget *content, MainWindow *window, quint64 edge);
    ~EdgeDrawer() override;

    void open() override;
    void close() override;
    void toggle() override;
    /// From open() to close(), however far the panel has come.
    bool isOpen() const override;

private:
    QPointer<DrawerPanel> m_panel;
};

#pragma once

#include <QRect>
#include <QString>

class QWidget;

/// A modal alert. Main thread.
class AlertPanel
{
public:
    enum Answer { Alternate = 0, Default = 1 };

    virtual ~AlertPanel() = default;
    /// Blocks until answered. Closing the panel counts as the default button.
    /// @param alternate null for a panel with a single button.
    virtual Answer run(const QString &title, const QString &message, const QString &defaultButton,
                       const QString &alternate) = 0;
};

/// The desktop's own way of opening things. Main thread.
class Workspace
{
public:
    virtual ~Workspace() = default;
    /// False when nothing could open it.
    virtual bool openUrl(const QString &url) = 0;
    virtual bool openFile(const QString &path) = 0;
};

/// Where windows may go. Main thread.
class Screen
{
public:
    virtual ~Screen() = default;
    /// The part of the window's screen that panels and docks leave free.
    virtual QRect visibleFrame(const QWidget *window) const = 0;
};

/// Everything with a window that leaves the process; set like SystemServices.
struct DesktopServices
{
    AlertPanel *alertPanel = nullptr;
    Workspace *workspace = nullptr;
    Screen *screen = nullptr;
};

DesktopServices &desktopServices();

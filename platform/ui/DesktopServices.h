#pragma once

#include <QImage>
#include <QRect>
#include <QString>

#include <functional>

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

/// The desktop's own way of opening and showing things. Main thread, except for the icons.
class Workspace
{
public:
    virtual ~Workspace() = default;
    /// False when nothing could be started to open it.
    /// @param failed called later, once at most, when what was started could not open it either.
    /// May be empty.
    virtual bool openUrl(const QString &url, const std::function<void()> &failed = {}) = 0;
    /// As openUrl(); false for a file that does not exist, too.
    virtual bool openFile(const QString &path, const std::function<void()> &failed = {}) = 0;

    /// The icon of the item at the path, or of an item of that name where there is none. Square,
    /// its edge in points, two pixels to a point. Any thread; from another than the main thread it
    /// waits for that one.
    virtual QImage iconForFile(const QString &path, int size) = 0;
    /// The icon of a type: a file name extension, a MIME type, or "APPL", which is an application.
    virtual QImage iconForFileType(const QString &type, int size) = 0;
};

/// Where windows may go. Main thread.
class Screen
{
public:
    virtual ~Screen() = default;
    /// What a window manager adds around a window, generously; unknown before it is shown.
    static constexpr int windowBorders = 48;

    /// The part of the window's screen that panels and docks leave free.
    virtual QRect visibleFrame(const QWidget *window) const = 0;
};

/// Lets the user point at a folder. Main thread.
class OpenPanel
{
public:
    virtual ~OpenPanel() = default;
    /// Blocks until answered. One folder that exists, never a file; none can be made on the way.
    /// @param folder where to start.
    /// @return its absolute path; null when the user cancels.
    virtual QString chooseFolder(const QString &title, const QString &folder) = 0;
};

/// Everything with a window that leaves the process; set like SystemServices.
struct DesktopServices
{
    AlertPanel *alertPanel = nullptr;
    Workspace *workspace = nullptr;
    Screen *screen = nullptr;
    OpenPanel *openPanel = nullptr;
};

DesktopServices &desktopServices();

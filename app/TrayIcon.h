#pragma once

#include <QMenu>
#include <QSystemTrayIcon>

class Application;
class mndCore;

/// The program's place in the desktop's tray, with Show and Quit. Main thread.
class TrayIcon
{
public:
    /// Shows the icon at once.
    TrayIcon(Application &application, mndCore &core);

    /// Whether the desktop has a tray.
    static bool isAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    QMenu m_menu;
    QSystemTrayIcon m_icon;
};

#pragma once

#include "app/TrayWatch.h"

#include <QMenu>
#include <QSystemTrayIcon>

#include <optional>

class Application;
class mndCore;

/// The program's place in the desktop's tray, with Show and Quit. Main thread.
class TrayIcon
{
public:
    /// Shows the icon as soon as the desktop has a tray, but not in the first moments.
    TrayIcon(Application &application, mndCore &core);

private:
    void show(Application &application, mndCore &core);

    QMenu m_menu;
    // Not made before there is a tray: the toolkit looks once for all which kind there is.
    std::optional<QSystemTrayIcon> m_icon;
    TrayWatch m_watch;
};

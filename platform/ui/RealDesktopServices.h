#pragma once

#include "platform/ui/DesktopServices.h"

/// Alerts as message boxes of the desktop.
class MessageBoxAlertPanel : public AlertPanel
{
public:
    Answer run(const QString &title, const QString &message, const QString &defaultButton,
               const QString &alternate) override;
};

/// The desktop's default applications (XDG MIME applications).
class XdgWorkspace : public Workspace
{
public:
    bool openUrl(const QString &url) override;
    bool openFile(const QString &path) override;
};

/// The screens of the window system.
class WindowSystemScreen : public Screen
{
public:
    QRect visibleFrame(const QWidget *window) const override;
};

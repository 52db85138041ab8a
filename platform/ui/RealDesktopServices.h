#pragma once

#include "platform/ui/DesktopServices.h"

/// Alerts as message boxes of the desktop.
class MessageBoxAlertPanel : public AlertPanel
{
public:
    Answer run(const QString &title, const QString &message, const QString &defaultButton,
               const QString &alternate) override;
};

/// The desktop's default applications (XDG MIME applications) and its icon theme.
class XdgWorkspace : public Workspace
{
public:
    bool openUrl(const QString &url, const std::function<void()> &failed = {}) override;
    bool openFile(const QString &path, const std::function<void()> &failed = {}) override;
    QImage iconForFile(const QString &path, int size) override;
    QImage iconForFileType(const QString &type, int size) override;
};

/// The toolkit's own dialog: the desktops' ones cannot be kept from making folders.
class FileDialogOpenPanel : public OpenPanel
{
public:
    QString chooseFolder(const QString &title, const QString &folder) override;
};

/// The screens of the window system.
class WindowSystemScreen : public Screen
{
public:
    QRect visibleFrame(const QWidget *window) const override;
};

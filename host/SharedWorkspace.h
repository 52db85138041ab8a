#pragma once

#include "platform/ui/DesktopServices.h"
#include "plugin_host/mndWorkspace.h"

#include <QObject>

/// Hands plugins the host's way of opening things. Main thread.
class SharedWorkspace : public QObject, public mndWorkspace
{
    Q_OBJECT
    Q_INTERFACES(mndWorkspace)

public:
    bool openUrl(const QString &url, const std::function<void()> &failed) override
    {
        return desktopServices().workspace->openUrl(url, failed);
    }
    bool openFile(const QString &path, const std::function<void()> &failed) override
    {
        return desktopServices().workspace->openFile(path, failed);
    }
};

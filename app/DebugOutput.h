#pragma once

#include "platform/foundation/SystemServices.h"
#include "plugin_host/PluginLoadReport.h"

/// What --debug prints: on standard error, a line for each thing that the running host is silent
/// about, with the id of the plugin that it is about. Passes on what goes to the system's log, in
/// whose place it stands while it lives: what plugins throw ends there. Any thread.
class DebugOutput : public PluginLoadObserver, public SystemLog
{
public:
    DebugOutput();
    ~DebugOutput() override;
    Q_DISABLE_COPY_MOVE(DebugOutput)

    void bundleHandled(const PluginLoadReport &report) override;
    void callIsWrong(const QString &what) override;
    void write(const QString &message) override;

    /// @param plugin null where it is nobody's.
    static void print(const char *plugin, const QString &what);

private:
    SystemLog *m_log;
};

#pragma once

#include "plugin_host/mndLoadReports.h"
#include "plugin_host/PluginLoadReport.h"

#include <QObject>

/// Keeps for plugins what became of bundles, and passes on all that the registry tells. Main
/// thread.
class LoadReports : public QObject, public mndLoadReports, public PluginLoadObserver
{
    Q_OBJECT
    Q_INTERFACES(mndLoadReports)

public:
    /// @param next is told, too; null for nobody. Not owned.
    explicit LoadReports(PluginLoadObserver *next)
        : m_next(next)
    { }

    void bundleHandled(const PluginLoadReport &report) override
    {
        if (!report.accepted) {
            const Reason reason = report.leftOutAfterCrash ? LeftOutAfterCrash
                : report.leftOut                           ? LeftOutOfThisRun
                                                           : Refused;
            m_notLoaded << Report{report.path, reason, report.problems.join(u"; ")};
        }
        if (m_next)
            m_next->bundleHandled(report);
    }

    void pluginCalled(const PluginCall &call) override
    {
        if (m_next)
            m_next->pluginCalled(call);
    }

    QList<Report> notLoaded() override { return m_notLoaded; }

private:
    PluginLoadObserver *m_next;
    QList<Report> m_notLoaded;
};

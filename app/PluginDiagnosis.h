#pragma once

#include "plugin_host/PluginLoadReport.h"

#include <QList>
#include <QTextStream>

class QObject;

/// Collects what becomes of every bundle, for --list-plugins and --check-plugin.
class PluginDiagnosis : public PluginLoadObserver
{
public:
    void bundleHandled(const PluginLoadReport &report) override { m_reports << report; }

    /// Every plugin with id, name, heading, path and load time; then the refused ones with the
    /// reason.
    void list(QTextStream &out) const;

    /// @param core the host that the plugin is given.
    /// Loads the bundle, unless start-up did, and says in one line each what is wrong with it.
    /// @return the exit status: 0 when nothing is.
    int check(const QString &path, QObject &core, QTextStream &out);

private:
    const PluginLoadReport *find(const QString &canonicalPath) const;

    QList<PluginLoadReport> m_reports;
};

#pragma once

#include "plugin_host/mndPlugins.h"
#include "plugin_host/PluginLoadReport.h"

#include <QFileInfo>
#include <QList>
#include <QMultiHash>
#include <QTextStream>

#include <memory>
#include <utility>
#include <vector>

class mndAppDelegate;
class PluginQuarantine;

/// Collects what becomes of every bundle, for --list-plugins and --check-plugin. Keeps the plugins
/// that it loads itself.
class PluginDiagnosis : public PluginLoadObserver
{
public:
    void bundleHandled(const PluginLoadReport &report) override;
    void pluginCalled(const PluginCall &call) override { m_calls << call; }

    /// Every plugin with id, name, heading, path and load time; then what is to be said of them,
    /// and the refused ones with the reason.
    void list(QTextStream &out) const;

    /// @param delegate the host that the plugin is given; outlives this.
    /// @param quarantine is told when the bundle's code may run.
    /// Loads the bundle, unless start-up did, shows its page once where nobody sees it, and says in
    /// one line each what is wrong with it.
    /// @return the exit status: 0 when nothing is.
    int check(const QString &path, mndAppDelegate &delegate, PluginQuarantine &quarantine,
              QTextStream &out);

private:
    const PluginLoadReport *find(const QFileInfo &bundle) const;
    mndPlugins &load(const QString &bundle, mndAppDelegate &delegate);
    QStringList problemsOfCalls(const QObject *plugin) const;
    /// The path of another plugin with the same id; null for none.
    QString rivalOf(const PluginLoadReport &report) const;
    /// What is wrong when another plugin's row has the same titles; null when none has.
    QString sharedRowOf(const PluginLoadReport &report) const;

    QList<PluginLoadReport> m_reports;
    QMultiHash<std::pair<QString, QString>, qsizetype> m_rows; ///< of accepted ones, by titles
    QList<PluginCall> m_calls;
    /// Until the end: the threads of one plugin may wait for the main thread while the next loads.
    std::vector<std::unique_ptr<mndPlugins>> m_registries;
};

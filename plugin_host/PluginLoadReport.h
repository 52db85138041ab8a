#pragma once

#include <QString>
#include <QStringList>

class QObject;

/// What became of one bundle.
struct PluginLoadReport
{
    QString path;
    bool accepted = false;          ///< it has a record in the registry
    bool leftOut = false;           ///< kept out of this run, whatever it is worth
    bool leftOutAfterCrash = false; ///< and for what reason
    bool result = false;            ///< what loadPluginFromPath answered
    QString id;
    QString name;
    QString heading;
    const QObject *plugin = nullptr; ///< of an accepted one; the registry's
    double milliseconds = 0;         ///< from opening the bundle to its record
    /// Why it was refused, or what its author should know of an accepted one; a line each.
    QStringList problems;
    /// For a plugin that threw: the text meant for the user. The running host never shows it.
    QString message;
};

/// One call into the code of a plugin.
struct PluginCall
{
    const QObject *plugin;
    QString name;
    double milliseconds; ///< not counting those for which the machine kept it waiting
    QString exception;   ///< what it threw; null for nothing
};

/// Told of what the running host itself says nothing about.
class PluginLoadObserver
{
public:
    virtual ~PluginLoadObserver() = default;
    /// What became of a bundle. Main thread.
    virtual void bundleHandled(const PluginLoadReport &report) = 0;
    /// The host has called its plugin. Main thread.
    virtual void pluginCalled(const PluginCall &) { }
    /// A plugin has called the host in a way that does nothing, or harm. Any thread: the one that
    /// the call has come from, where that is in it still.
    virtual void callIsWrong(const QString &what) { Q_UNUSED(what) }
};

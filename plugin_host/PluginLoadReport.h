#pragma once

#include <QString>
#include <QStringList>

/// What became of one bundle.
struct PluginLoadReport
{
    QString path;
    bool accepted = false; ///< it has a record in the registry
    bool leftOut = false;  ///< kept out of this run, whatever it is worth
    bool result = false;   ///< what loadPluginFromPath answered
    QString id;
    QString name;
    QString heading;
    double milliseconds = 0; ///< from opening the bundle to its record
    /// Why it was refused, or what its author should know of an accepted one; a line each.
    QStringList problems;
    /// For a plugin that threw: the text meant for the user. The running host never shows it.
    QString message;
};

/// Told of every bundle that was handled, on the main thread. For diagnosis: the running host stays
/// silent.
class PluginLoadObserver
{
public:
    virtual ~PluginLoadObserver() = default;
    virtual void bundleHandled(const PluginLoadReport &report) = 0;
};

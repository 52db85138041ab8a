#pragma once

#include <QString>
#include <QStringList>

/// What the program was started for.
struct CommandLine
{
    bool hidden = false; ///< start without showing the window
    bool listPlugins = false;
    bool debug = false;         ///< print what is silent otherwise
    bool safeMode = false;      ///< only the plugins that come with the application
    bool touchBar = false;      ///< asked for by its option
    QStringList withoutPlugins; ///< ids or bundles to leave out of this run
    QString checkPlugin;        ///< path of a bundle; null for none
    QString breadcrumb;         ///< a check in a process of its own: where it tells how far it got
    QString snapshot;           ///< path of a picture to save before ending; null for none
    QStringList documents;      ///< absolute paths

    /// The bundle of --check-plugin and those after it, as "*.bundle" gives them.
    QStringList pluginsToCheck() const
    {
        return checkPlugin.isNull() ? QStringList() : QStringList{checkPlugin} + documents;
    }

    /// Whether there are options that count from a start to its end.
    bool isForTheStart() const
    {
        return debug || safeMode || touchBar || !withoutPlugins.isEmpty();
    }

    /// Whether no window is shown and the program ends by itself.
    bool isDiagnosis() const { return listPlugins || !checkPlugin.isNull(); }

    /// Whether these raw arguments ask for something that needs no display.
    static bool needsNoDisplay(int argc, char **argv);

    /// Whether these raw arguments, or the environment by SOLVANE_TOUCH_BAR=1, ask for the Touch
    /// Bar: that decides which application object there is.
    static bool wantsTouchBar(int argc, char **argv);

    /// Reads the application object's arguments. Answers --help and --version, and ends the process
    /// with status 1 and a line on standard error for an unknown option.
    static CommandLine parse();
};

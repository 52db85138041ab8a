#pragma once

#include "platform/foundation/Dictionary.h"
#include "platform/foundation/Selector.h"
#include "plugin_host/PluginLoadReport.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class Bundle;
class PluginQuarantine;
class mndPluginDelegate;
class QAbstractButton;
class QWidget;
struct ReadBundle;

/// The registry: every accepted plugin, in load order.
///
/// A record is a dictionary with "dat", the plugin's info dictionary itself, and "obj", the plugin
/// (QObject *), which the registry owns. Records are never removed. Main thread only.
class mndPlugins
{
public:
    /// @param core the host object handed to every plugin; not owned.
    explicit mndPlugins(QObject *core);
    ~mndPlugins();
    Q_DISABLE_COPY_MOVE(mndPlugins)

    /// Who is told what became of every bundle; null for nobody. Not owned.
    void setObserver(PluginLoadObserver *observer) { m_observer = observer; }
    /// What keeps plugins out and watches over the rest; null for nothing. Not owned.
    void setQuarantine(PluginQuarantine *quarantine) { m_quarantine = quarantine; }

    /// Loads the application's own bundles, by name, then those directly inside
    /// ~/Library/Application Support/Solvane, by name.
    void loadAllPlugins();
    /// Whether there is any beside the application's own.
    static bool hasAddedBundles();

    /// True when the bundle was accepted or is no plugin at all. Nothing a bundle does or lacks is
    /// reported to the user, and nothing it throws gets out.
    bool loadPluginFromPath(const QString &path);

    bool listContainsID(const QString &id) const;
    quint64 count() const { return static_cast<quint64>(_plugins.size()); }

    /// Absent only when the index is greater than the count. The guard is this loose on purpose:
    /// @throws std::out_of_range when the index equals the count.
    Dictionary pluginAtIndex(quint64 index) const;

    /// The first record whose info dictionary has this id; absent when there is none.
    Dictionary pluginWithID(const QString &id) const;
    static Dictionary info(const Dictionary &record)
    {
        return record.value<Dictionary>(QStringLiteral("dat"));
    }

    /// Sends a message without arguments to every mndPluginDelegate that answers it; plugins
    /// appended meanwhile are reached as well.
    void performSelectorOnAllDelegates(const Selector &selector);

    /// Clears the host view, tells all plugins onViewHide and the chosen one onViewShow, and adds
    /// its view. Nothing happens for a plugin without a view.
    void doDisplayMainViewForPluginAtIndex(quint64 index, QWidget *hostView);
    void doDisplayMainViewForPluginById(const QString &id, QWidget *hostView);
    /// Gives every view in the host view back to its plugin.
    static void removeSubviews(QWidget *hostView);

    /// Recolours the views inside the given one to the host's look, by exact class: labels and line
    /// edits are marked as raised text, button titles become white, tab views lose their ground.
    static void recurseSubViews(QWidget *view);
    static void setButtonStringColor(QAbstractButton *button, const QColor &color);

private:
    QStringList pathsToLoad() const;
    void tellOfLinks();
    bool loadBundle(const QString &path, const std::function<ReadBundle()> &read);
    bool load(const ReadBundle &read, PluginLoadReport &report);
    bool initialize(std::unique_ptr<QObject> object, double constructed, PluginLoadReport &report);
    bool isLeftOut(const QString &path, PluginLoadReport &report) const;
    bool isKeptOut(const Bundle &bundle, PluginLoadReport &report) const;
    void watchView(const Dictionary &record);
    void watchFirstShow(QObject *plugin, QWidget *view);
    void callWatched(QObject *plugin, const std::function<void()> &call);
    void accept(const Dictionary &info, std::unique_ptr<QObject> plugin);
    void quietly(const Dictionary &record, const char *what,
                 void (mndPluginDelegate::*message)()) noexcept;
    bool isTaken(const QString &id) const;
    void broadcast(const Selector &selector, const std::function<bool()> &goOn);

    QList<Dictionary> _plugins;
    /// While all are loaded, the ids that were taken so far.
    std::optional<QSet<QString>> m_ids;
    QObject *m_core;
    PluginLoadObserver *m_observer = nullptr;
    PluginQuarantine *m_quarantine = nullptr;
    QHash<QObject *, QString> m_bundles; ///< of plugins under watch
    QSet<QObject *> m_neverShown;        ///< those of them
    /// Plugins with each view that the host empties "view" for when it goes.
    QSet<std::pair<const QObject *, const QObject *>> m_watchedViews;
    quint64 m_displays = 0; ///< counts up, so that a display knows whether it is the last one
    int m_displayDepth = 0;
    QObject m_guard; ///< ends the watch over plugins and views
};

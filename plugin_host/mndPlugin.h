#pragma once

#include "platform/foundation/Dictionary.h"

#include <QtPlugin>

/// What makes a bundle a plugin: its module's root object is a QObject with this interface.
///
/// Called on the main thread, once, right after the object was made.
class mndPlugin
{
public:
    virtual ~mndPlugin() = default;

    /// @param parameters "bundle": the bundle's path (QString); "core": the host (QObject *, to be
    ///        cast to mndCore).
    /// @return the plugin info dictionary, or an absent one to refuse loading. Its keys:
    ///   - "id": QString, the plugin's unique identifier; the first plugin of an id wins.
    ///   - "name": QString, title of the sidebar row.
    ///   - "parent": QString, title of the heading, or "*hidden*" for no row.
    ///   - "icon", "icon-selected": QImage, of the sidebar row.
    ///   - "view": QWidget *, the main view. The plugin keeps owning it: the host borrows it while
    ///     it shows and neither moves nor resizes it. Without one there is no row. Take one that
    ///     the host has neither loaded nor shown out of here before you delete it.
    ///   - "first": anything; when present the row goes first under its heading.
    ///   The host writes "__item" and "icon-selected" into it.
    /// What it throws is caught: the plugin is left out.
    virtual Dictionary pluginInitialize(const Dictionary &parameters) = 0;
};

#define mndPlugin_iid "com.solvane.mndPlugin/6"
Q_DECLARE_INTERFACE(mndPlugin, mndPlugin_iid)

/// Optional second role of the same object. Override what you need; main thread only.
class mndPluginDelegate
{
public:
    virtual ~mndPluginDelegate() = default;

    /// The main view is about to be added to the window.
    virtual void onViewShow() { }
    /// The content area is being cleared for some plugin's view, maybe this one's.
    virtual void onViewHide() { }
    /// Start-up has finished loading all plugins; sent once.
    virtual void onAllPluginsLoaded() { }
};

#define mndPluginDelegate_iid "com.solvane.mndPluginDelegate/6"
Q_DECLARE_INTERFACE(mndPluginDelegate, mndPluginDelegate_iid)

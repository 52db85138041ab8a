#pragma once

#include "platform/ui/TouchBar.h"

#include <QImage>

class mndPlugins;

/// What stands on the host's Touch Bars. Main thread.
namespace HostTouchBar {

/// Items: the product's logo; the icon row of the system bar; on a plugin bar the button that leads
/// to the status plugin, and the plugin's own text buttons.
QString logo();
QString systemIcons();
QString pluginStatusButton();
QString pluginButtons();

/// The plugins that the icon row leads to, in order.
const QStringList &pluginIds();

QStringList systemItems();
QStringList pluginItems(bool withStatusButton);

/// A white silhouette of the plugin's icon; null for a plugin that is not loaded or has none. The
/// status plugin has an image of the host's.
QImage iconForPlugin(const mndPlugins *plugins, const QString &id);

/// The icons of all plugins that have a view, 24 × 24 points, in load order.
QList<QImage> allPluginIcons(const mndPlugins *plugins);

/// Null for an identifier that is none of the above.
/// @param titles of the text buttons.
/// @param target answers tbPressed: and tbPluginPressed:, whose sender is a SegmentedControl.
std::unique_ptr<TouchBarItem> makeItem(const QString &identifier, const mndPlugins *plugins,
                                       const QStringList &titles, QObject *target);

} // namespace HostTouchBar

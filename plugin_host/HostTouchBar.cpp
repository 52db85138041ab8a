#include "plugin_host/HostTouchBar.h"

#include "platform/foundation/Dictionary.h"
#include "platform/ui/IconImage.h"
#include "platform/ui/NamedImage.h"
#include "platform/ui/NamedImageView.h"
#include "platform/ui/SegmentedControl.h"
#include "plugin_host/mndPlugins.h"
#include "plugin_host/TouchBarImages.h"

using namespace Qt::StringLiterals;

namespace HostTouchBar {

namespace {

constexpr int highPriority = 1000;
constexpr int iconSize = 18;
constexpr int largeIconSize = 24;
constexpr QSize logoSize(26, 26);
constexpr float opaque = 1.0F;
constexpr float silhouette = 0.9F;

Dictionary infoOf(const mndPlugins *plugins, const QString &id)
{
    return plugins ? mndPlugins::info(plugins->pluginWithID(id)) : Dictionary();
}

/// A plugin without an icon leaves no gap in the row. Its button is not missed by whoever maps a
/// tap back to a plugin, though: that goes by the whole list of ids.
std::unique_ptr<QWidget> iconRow(const mndPlugins *plugins, const QStringList &ids, QObject *target)
{
    QList<QImage> images;
    QStringList names;
    for (const QString &id : ids) {
        const QImage image = iconForPlugin(plugins, id);
        if (image.isNull())
            continue;
        images << image;
        names << infoOf(plugins, id).string(u"name"_s);
    }
    auto row = std::make_unique<SegmentedControl>(images, target, Selector(u"tbPressed:"_s));
    for (int i = 0; i < names.size(); ++i)
        row->setSegmentName(i, names[i]);
    return row;
}

std::unique_ptr<QWidget> viewFor(const QString &identifier, const mndPlugins *plugins,
                                 const QStringList &titles, QObject *target)
{
    if (identifier == logo()) {
        auto image = std::make_unique<NamedImageView>();
        image->setImageName(u"logo_main_tb"_s);
        image->setImageSize(logoSize);
        image->setFixedSize(logoSize);
        return image;
    }
    if (identifier == systemIcons())
        return iconRow(plugins, pluginIds(), target);
    if (identifier == pluginStatusButton())
        return iconRow(plugins, {pluginIds().first()}, target);
    if (identifier == pluginButtons()) {
        auto buttons =
            std::make_unique<SegmentedControl>(titles, target, Selector(u"tbPluginPressed:"_s));
        buttons->setSegmentStyle(SegmentedControl::Separated);
        return buttons;
    }
    return nullptr;
}

} // namespace

QString logo()
{
    return u"com.solvane.system.touchbar.icon"_s;
}

QString systemIcons()
{
    return u"com.solvane.system.touchbar.segmented"_s;
}

QString pluginStatusButton()
{
    return u"com.solvane.plugin.touchbar.system"_s;
}

QString pluginButtons()
{
    return u"com.solvane.plugin.touchbar.segmented"_s;
}

const QStringList &pluginIds()
{
    static const QStringList ids{u"plugin.status"_s,   u"plugin.cleaners"_s, u"plugin.network"_s,
                                 u"plugin.memboost"_s, u"plugin.updater"_s,  u"plugin.tweaks"_s,
                                 u"plugin.support"_s};
    return ids;
}

QStringList systemItems()
{
    return {logo(), systemIcons(), TouchBar::otherItemsProxy()};
}

QStringList pluginItems(bool withStatusButton)
{
    if (withStatusButton)
        return {logo(), pluginStatusButton(), pluginButtons(), TouchBar::otherItemsProxy()};
    return {logo(), pluginButtons(), TouchBar::otherItemsProxy()};
}

QImage iconForPlugin(const mndPlugins *plugins, const QString &id)
{
    const Dictionary info = infoOf(plugins, id);
    if (info.isAbsent())
        return {};
    if (id == pluginIds().first()) {
        const QPixmap image = NamedImage::pixmap(u"PLUGIN_STATUS_TB"_s, {iconSize, iconSize},
                                                 IconImage::devicePixelRatio);
        return TouchBarImages::tinted(image.toImage(), opaque);
    }
    const auto icon = info.value<QImage>(u"icon"_s);
    return TouchBarImages::resized(TouchBarImages::tinted(icon, silhouette),
                                   QSizeF(iconSize, iconSize));
}

QList<QImage> allPluginIcons(const mndPlugins *plugins)
{
    QList<QImage> icons;
    for (quint64 i = 0; plugins && i < plugins->count(); ++i) {
        const Dictionary info = mndPlugins::info(plugins->pluginAtIndex(i));
        if (!info.contains(u"view"_s))
            continue;
        const QImage icon = TouchBarImages::resized(info.value<QImage>(u"icon"_s),
                                                    QSizeF(largeIconSize, largeIconSize));
        if (!icon.isNull())
            icons << icon;
    }
    return icons;
}

std::unique_ptr<TouchBarItem> makeItem(const QString &identifier, const mndPlugins *plugins,
                                       const QStringList &titles, QObject *target)
{
    std::unique_ptr<QWidget> view = viewFor(identifier, plugins, titles, target);
    if (!view)
        return nullptr;
    return std::make_unique<TouchBarItem>(TouchBarItem{identifier, std::move(view), highPriority});
}

} // namespace HostTouchBar

#include "FakeCore.h"

#include <QPluginLoader>

/// The bundles as they were built, in a program that has nothing of the host.
TEST(Bundles, GiveTheHostWhatItNeeds)
{
    const std::tuple<const char *, const char *, const char *, const char *, bool, bool> cases[] = {
        {BUNDLES "/Status.bundle", "plugin.status", "[Status]", "[System]", true, true},
        {BUNDLES "/Support.bundle", "plugin.support", "[Support]", "[Online]", false, true},
        {SAMPLES "/SampleEcho.bundle", "plugin.sample-echo", "[Echo]", "[System]", false, false},
    };
    for (const auto &[path, id, name, parent, first, icons] : cases) {
        SCOPED_TRACE(path);
        const QString bundle = QString::fromUtf8(path);
        QPluginLoader loader(bundle + u"/Contents/MacOS/"_s + QFileInfo(bundle).baseName()
                             + u".so"_s);
        EXPECT_EQ(loader.metaData()[u"IID"_s].toString(), QLatin1StringView(mndPlugin_iid));
        EXPECT_EQ(loader.metaData()[u"MetaData"_s][u"api"_s].toInt(), 6);
        const std::unique_ptr<QObject> object(loader.instance());
        auto *plugin = qobject_cast<mndPlugin *>(object.get());
        auto *delegate = qobject_cast<mndPluginDelegate *>(object.get());
        ASSERT_TRUE(plugin && delegate) << qPrintable(loader.errorString());

        FakeCore core;
        Dictionary parameters = Dictionary::make();
        parameters.setValue(u"bundle"_s, bundle);
        parameters.setValue(u"core"_s, QVariant::fromValue<QObject *>(&core));
        const Dictionary info = plugin->pluginInitialize(parameters);
        EXPECT_EQ(info.string(u"id"_s).toStdString(), id);
        EXPECT_EQ(info.string(u"name"_s).toStdString(), name);
        EXPECT_EQ(info.string(u"parent"_s).toStdString(), parent);
        EXPECT_EQ(info.contains(u"first"_s), first);
        const auto icon = info.value<QImage>(u"icon"_s);
        const auto selected = info.value<QImage>(u"icon-selected"_s);
        EXPECT_EQ(icon.deviceIndependentSize(), icons ? QSizeF(16, 16) : QSizeF(0, 0));
        EXPECT_EQ(selected.size(), icon.size());
        EXPECT_EQ(icon == selected, !icons) << "a selected row needs a lighter picture";

        QWidget content;
        content.resize(700, 500);
        content.show();
        auto *view = info.value<QWidget *>(u"view"_s);
        ASSERT_TRUE(view);
        delegate->onViewShow();
        view->setParent(&content);
        view->show();
        EXPECT_EQ(view->size(), content.size());
        content.resize(900, 640);
        EXPECT_EQ(view->size(), content.size());
        delegate->onViewHide();
        view->setParent(nullptr); // as the host does before the plugin goes
    }
}

#pragma once

#include "host/InterfaceFiles.h"
#include "host/mndAppDelegate.h"
#include "platform/ui/InterfaceFile.h"
#include "plugin_host/mndPlugins.h"
#include "support/TestServices.h"

#include <QMenuBar>

/// A whole host on seams: the real window from its real interface file, real bundles, a scratch
/// home.
struct Host : testing::Test
{
    Host()
    {
        addInterfaceFiles();
        services.addResource(u"en.strings"_s, "SZ_NOTHING = nothing;");
        services.onPluginsSought = [this] {
            delegate->sharedObjectRegister(u"test.recorder"_s, &services.recorder);
        };
        setApplicationDelegate(delegate.get());
        window = InterfaceFile::load(u"MainMenu"_s, delegate.get());
    }

    ~Host() override { delegate.reset(); }

    /// Start-up to its very end, with these fixtures as the application's own plugins.
    void start(std::initializer_list<const char *> fixtures = {})
    {
        for (const char *fixture : fixtures)
            services.addFixture(QString::fromLatin1(fixture), services.resources());
        delegate->applicationDidFinishLaunching();
        services.runScheduled();
        services.recorder.take();
    }

    QAction *item(const char *name) const { return delegate->property(name).value<QAction *>(); }
    PXSourceList *list() const { return delegate->property("sourceList").value<PXSourceList *>(); }
    QWidget *content() const { return delegate->property("pluginViewHost").value<QWidget *>(); }
    /// Object name of the view that shows; empty for none.
    QString shownView() const
    {
        const auto views = content()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        return views.isEmpty() ? QString() : views.first()->objectName();
    }

    /// In the window; null where there is none of that name.
    template <typename T = QLabel>
    T *part(const char *name) const
    {
        return window->findChild<T *>(QString::fromLatin1(name));
    }
    /// What the user, or the system, has got to do with since it was asked last.
    QStringList outside()
    {
        return services.recorder.take().filter(QRegularExpression(u"^(open|alert|exit|choose)"_s));
    }

    QString logPath() const { return services.home.path() + u"/Library/Logs/solvane.log"_s; }
    QStringList logLines() const
    {
        return QString::fromUtf8(fileContent(logPath())).split(u'\n', Qt::SkipEmptyParts);
    }

    TestServices services;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<mndAppDelegate> delegate = std::make_unique<mndAppDelegate>();
};

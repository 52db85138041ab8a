#include "host/HostFixture.h"

#include "plugin_host/PluginQuarantine.h"

#include <QCloseEvent>
#include <QMenu>

namespace {

struct Updater : QObject
{
    Q_OBJECT
public:
    int checks = 0;
    Q_INVOKABLE void checkForUpdates() { ++checks; }
};

} // namespace

TEST_F(Host, ClosingHidesTheWindowAndTheMenuBringsItBack)
{
    start();
    window->show();
    const auto isOffered = [this] {
        EXPECT_EQ(item("miShowMainWindow")->isVisible(),
                  item("miShowMainWindowSeperator")->isVisible());
        return item("miShowMainWindow")->isVisible();
    };
    EXPECT_FALSE(isOffered());
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(isOffered() && !window->isVisible());
    item("miShowMainWindow")->trigger();
    EXPECT_TRUE(!isOffered() && window->isVisible());
    window->showMinimized();
    EXPECT_TRUE(delegate->applicationShouldHandleReopen(nullptr, true));
    EXPECT_FALSE(window->isMinimized());
}

TEST_F(Host, ResetsThePreferencesOnlyAfterConsent)
{
    start();
    services.defaults = {{u"slvCore.elog"_s, false}, {u"of.a.plugin"_s, 7}};
    item("miPrefsReset")->trigger();
    EXPECT_EQ(
        services.recorder.take(),
        QStringList(
            u"alert Solvane|This option will reset your preferences and should be used if you "
            "have been advised to do so by Solvane support, or you are having trouble with "
            "Quick Clean not detecting many items to remove.\n\nAfter your preferences have "
            "been reset Solvane will automatically exit.\n\nWould you like to proceed?|"
            "Cancel|Reset"_s));
    EXPECT_EQ(services.defaults.size(), 2);

    services.alertAnswer = AlertPanel::Alternate;
    item("miPrefsReset")->trigger();
    EXPECT_TRUE(services.defaults.isEmpty());
    EXPECT_EQ(services.recorder.take().mid(1), (QStringList{u"synchronize"_s, u"exit 1"_s}));
    services.defaultsAreWritten = false;
    item("miPrefsReset")->trigger();
    const QStringList failed = services.recorder.take().mid(2);
    EXPECT_TRUE(failed.value(0).contains(u"could not be reset"_s)) << "the user is told";
    EXPECT_EQ(failed.value(1), u"exit 2"_s);
}

TEST_F(Host, TellsWhetherAPluginWasTakenBack)
{
    services.addFixture(u"Good"_s, services.supportFolder(), u"R&D"_s);
    const QString bundle = services.supportFolder() + u"/R&D.bundle"_s;
    start();
    for (const auto &[isStored, told] : {std::pair{true, u"“R&D” is started again the next time"_s},
                                         {false, u"This could not be stored"_s}}) {
        PluginQuarantine::leaveOut(bundle, bundle + u"/Contents/MacOS/Good.so"_s);
        services.defaultsAreWritten = isStored;
        QMenu *help = window->findChild<QMenuBar *>()->actions().last()->menu();
        Q_EMIT help->aboutToShow();
        QMenu *leftOut = help->actions().last()->menu();
        ASSERT_TRUE(leftOut && leftOut->menuAction()->isVisible());
        EXPECT_EQ(leftOut->title(), u"&Left-out plugins"_s) << "it has its letter at once";
        outside();
        leftOut->actions().first()->trigger();
        QCoreApplication::processEvents();
        EXPECT_TRUE(outside().value(0).startsWith(u"alert Solvane|"_s + told));
    }
}

TEST_F(Host, OpensWhatTheMenusLeadTo)
{
    start({"StatusFixture"});
    delegate->lblHomepageClicked();
    EXPECT_EQ(services.recorder.take(), QStringList{u"open url http://www.solvane.example"_s});
    EXPECT_TRUE(delegate->applicationOpenFile(nullptr, u"/any/document"_s));
    item("miHelpLink")->trigger();
    EXPECT_EQ(shownView(), u"plugin.status"_s) << "there is no support plugin to show";
    QAction *check = item("miCheckForUpdate");
    const auto isOffered = [check] {
        for (QObject *menu : check->associatedObjects())
            QMetaObject::invokeMethod(menu, "aboutToShow");
        return check->isEnabled();
    };
    check->trigger();
    EXPECT_FALSE(isOffered());
    QObject mute;
    delegate->sharedObjectRegister(u"shared.updater"_s, &mute);
    check->trigger();
    {
        Updater updater;
        delegate->sharedObjectRegister(u"shared.updater"_s, &updater);
        EXPECT_TRUE(isOffered());
        check->trigger();
        EXPECT_EQ(updater.checks, 1);
    }
    EXPECT_FALSE(isOffered());
}

TEST_F(Host, LooksTextsUpWithoutEverFailing)
{
    services.addResource(u"en.strings"_s, "EMPTY = \"\"; LIST = (1, 2); TEXT = found;");
    start();
    EXPECT_EQ(list()->locale(), QLocale(u"en"_s)) << "its capitals are those of the texts";
    services.preferredLanguages = {u"de"_s, u"fr"_s};
    EXPECT_EQ(delegate->localizeLink(u"http://a/b?c"_s), u"http://a/b-de?c"_s);
    services.defaults[u"slvCore.elog"_s] = true;
    EXPECT_EQ(delegate->stringResource({}, u"fallback"_s), u"!aId"_s);
    EXPECT_EQ(delegate->stringResource(u"TEXT"_s, u"fallback"_s), u"found"_s);
    EXPECT_EQ(delegate->stringResource(u"EMPTY"_s, u"fallback"_s), u""_s);
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_FALSE(delegate->stringResource(u"LIST"_s, {}).isNull());
    EXPECT_TRUE(delegate->stringResource(u"MISSING"_s, {}).isNull());
    EXPECT_EQ(delegate->stringResource(u"MISSING"_s, u"fallback"_s), u"fallback"_s);
    const QString line =
        u"16/11/2026 00:45 mndAppDelegate::stringResource:def::1373 Unable to get MISSING"_s;
    EXPECT_EQ(logLines(), QStringList(2, line));
}

#include "MenusTest.moc"

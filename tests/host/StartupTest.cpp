#include "host/HostFixture.h"
#include "platform/ui/ProgressIndicator.h"

namespace {

/// Notes when the watched view is shown and hidden.
struct VisibilityNotes : QObject
{
    explicit VisibilityNotes(Recorder &recorder)
        : m_recorder(recorder)
    { }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
            m_recorder.note(event->type() == QEvent::ShowToParent ? u"sidebar shown"_s
                                                                  : u"sidebar hidden"_s);
        return false;
    }
    Recorder &m_recorder;
};

} // namespace

TEST_F(Host, TakesItsStepsInOrder)
{
    for (const QString &name : {u"Welcome"_s, u"slvFeedback"_s, u"About"_s, u"Prefs"_s}) {
        InterfaceFile::add(name, [this, name] {
            services.recorder.note(u"load "_s + name);
            return std::make_unique<QWidget>();
        });
    }
    // With no folder for the log file its lines go to the system log, where the recorder sees them.
    makeFile(services.home.filePath(u"Library"_s), {});
    services.defaults[u"slvCore.elog"_s] = true;
    services.addResource(
        u"en.strings"_s,
        "SZ_MENU_ABOUT = about; SZ_MENU_WINDOW = win; SZ_HEADING_CLEANING = Cleaning;");
    services.addFixture(u"Good"_s, services.resources());
    services.addFixture(u"StatusFixture"_s, services.resources());
    VisibilityNotes visibility(services.recorder);
    list()->installEventFilter(&visibility);
    QObject::connect(item("miAbout"), &QAction::changed,
                     [this] { services.recorder.note(u"menu "_s + item("miAbout")->text()); });

    delegate->applicationDidFinishLaunching();
    QStringList steps = services.recorder.take();
    // Texts that the miniature language file lacks are many; two of them stand for all.
    steps.removeIf([](const QString &step) {
        return step.contains("Unable to get"_L1) && !step.endsWith("SZ_MENU_QUIT\n"_L1)
            && !step.endsWith("SZ_HEADING_ONLINE\n"_L1);
    });
    const QString stamp = u"syslog 16/11/2026 00:45 mndAppDelegate::"_s;
    EXPECT_EQ(steps,
              (QStringList{
                  u"resource en.strings"_s,
                  u"menu about"_s,
                  stamp + u"stringResource:def::1373 Unable to get SZ_MENU_QUIT\n"_s,
                  u"load slvFeedback"_s,
                  u"resource v5-title-blu.svg"_s,
                  u"resource v5-title-blu.png"_s,
                  u"resources *.bundle"_s,
                  u"plugin.fixture.Good initialize Good.bundle"_s,
                  u"plugin.status initialize StatusFixture.bundle"_s,
                  stamp + u"stringResource:def::1373 Unable to get SZ_HEADING_ONLINE\n"_s,
                  stamp + u"showPlugin::216 plugin.status\n"_s,
                  u"plugin.fixture.Good onViewHide"_s,
                  u"plugin.status onViewHide"_s,
                  u"plugin.status onViewShow"_s,
                  u"load About"_s,
                  u"load Prefs"_s,
                  u"sidebar hidden"_s,
                  u"after 0.1"_s,
                  stamp + u"applicationDidFinishLaunching::847 Loaded v512 (2)\n"_s,
              }));
    EXPECT_TRUE(item("miExtendedLoggingEnable")->isChecked());

    services.runScheduled();
    EXPECT_EQ(services.recorder.take(),
              (QStringList{u"plugin.fixture.Good onAllPluginsLoaded"_s,
                           u"plugin.status onAllPluginsLoaded"_s, u"later"_s, u"after 0.1"_s,
                           u"sidebar shown"_s}));
}

TEST_F(Host, PlacesSpinnersOnceTheSidebarHasItsPlace)
{
    services.addFixture(u"StatusFixture"_s, services.resources());
    const auto spinners = [this] { return list()->findChildren<ProgressIndicator *>(); };
    delegate->applicationDidFinishLaunching();
    delegate->pluginSetProcessing(u"plugin.status"_s, true);
    EXPECT_TRUE(spinners().isEmpty());
    services.runScheduled();
    ASSERT_EQ(spinners().size(), 1);
    EXPECT_FALSE(spinners().first()->isHidden());
    delegate->pluginSetProcessing(u"plugin.status"_s, false);
    ASSERT_EQ(spinners().size(), 1) << "found again";
    EXPECT_TRUE(spinners().first()->isHidden());
}

TEST_F(Host, TakesEveryMenuTextFromItsKey)
{
    const std::pair<const char *, const char *> items[] = {
        {"miAbout", "SZ_MENU_ABOUT"},
        {"miPrefs", "SZ_MENU_PREFS"},
        {"miPrefsReset", "SZ_MENU_PREFS_RESET"},
        {"miFeedback", "SZ_MENU_FEEDBACK"},
        {"miCheckForUpdate", "SZ_MENU_UPDATE"},
        {"miServices", "SZ_MENU_SERVICES"},
        {"miHideSolvane", "SZ_MENU_HIDE"},
        {"miHideOthers", "SZ_MENU_HIDE_OTHERS"},
        {"miShowAll", "SZ_MENU_SHOW_ALL"},
        {"miQuit", "SZ_MENU_QUIT"},
        {"miMinimize", "SZ_MENU_MINIMIZE"},
        {"miZoom", "SZ_MENU_ZOOM"},
        {"miBringToFront", "SZ_MENU_BRING_ALL_TO_FRONT"},
        {"miShowMainWindow", "SZ_MENU_SHOW_MAIN_WINDOW"},
        {"miHelp", "SZ_MENU_HELP"},
        {"miHelpLink", "SZ_MENU_HELP_ITEM"},
        {"miExtendedLogging", "SZ_EXTENDED_LOGGING"},
        {"miExtendedLoggingEnable", "SZ_EXTENDED_LOGGING_ENABLE"},
        {"miExtendedLoggingSend", "SZ_REVEAL_LOG"},
    };
    QByteArray file = "SZ_MENU_WINDOW = \"of SZ_MENU_WINDOW\";";
    for (const auto &[name, key] : items)
        file += QByteArray(key) + " = \"of " + key + "\";";
    services.addResource(u"en.strings"_s, file);
    const QString windowEntry = item("miWindow")->text();
    start();
    for (const auto &[name, key] : items)
        EXPECT_EQ(item(name)->text(), u"of "_s + QLatin1StringView(key));
    const auto topLevel = delegate->window()->menuBar()->actions();
    ASSERT_EQ(topLevel.size(), 3);
    EXPECT_EQ(topLevel[1]->menu()->title(), u"of SZ_MENU_WINDOW"_s);
    EXPECT_EQ(item("miWindow")->text(), windowEntry) << "the entry itself is not retitled";
    EXPECT_EQ(topLevel[2]->menu()->title(), u"of SZ_MENU_HELP"_s);
}

TEST_F(Host, KeepsDesignedMenuTextsWithoutTheirKeysButForThree)
{
    const char *const names[] = {"miQuit", "miExtendedLogging", "miExtendedLoggingEnable",
                                 "miExtendedLoggingSend"};
    for (const char *name : names)
        item(name)->setText(u"designed"_s);
    start();
    QStringList texts;
    for (const char *name : names)
        texts << item(name)->text();
    EXPECT_EQ(texts.join(u'|'),
              u"designed|Extended logging|Enable extended logging|Reveal logfile"_s);
}

TEST_F(Host, EndsWithAFatalAlertWhenThereAreNoTexts)
{
    const std::tuple<const char *, const char *> cases[] = {{nullptr, "Fatal error (1)"},
                                                            {"( a, list )", "Fatal error (2)"},
                                                            {"{ broken", "Fatal error (2)"}};
    for (const auto &[english, title] : cases) {
        SCOPED_TRACE(title);
        QFile::remove(services.resources() + u"/en.strings"_s);
        if (english)
            services.addResource(u"en.strings"_s, english);
        delegate->applicationDidFinishLaunching();
        const QStringList events = services.recorder.take();
        ASSERT_GE(events.size(), 2);
        EXPECT_EQ(events[events.size() - 2],
                  QLatin1StringView(title).toString().prepend(u"alert "_s)
                      + u"|Unable to load language file.  Please re-install Solvane and if the "
                        "problem persists visit https://www.solvane.example/support|OK|"_s);
        EXPECT_EQ(events.last(), u"exit 0"_s);
    }
}

TEST_F(Host, ShowsTheFiveHeadingsOnItsGroundsWithoutAnyPlugin)
{
    start();
    EXPECT_EQ(list()->numberOfRows(), 5);
    EXPECT_TRUE(list()->selectedRowIndexes().empty());
    EXPECT_TRUE(shownView().isEmpty());
    for (int row = 0; row < 5; ++row)
        EXPECT_FALSE(delegate->sourceListIsItemExpandable(list(), list()->itemAtRow(row)));
    EXPECT_FALSE(list()->isHidden());
    EXPECT_EQ(window->palette().color(QPalette::Window), Qt::white);
    EXPECT_EQ(list()->parentWidget()->palette().color(QPalette::Window).name(), u"#a8d6f2"_s);
    const mndTheme &theme = *delegate->uiTheme();
    QStringList shared;
    for (const QColor &color :
         {theme.backgroundColor(), theme.sidebarColor(), theme.sidebarFontColor()})
        shared << color.name(QColor::HexArgb);
    EXPECT_EQ(shared.join(u' '), u"#ffffffff #ffa8d6f2 #ff000000"_s);
}

TEST_F(Host, PutsTheMarkIntoTheMiddleOfTheTitleRow)
{
    window->resize(900, 600);
    start();
    const auto *title =
        window->findChild<QMenuBar *>()->findChild<QWidget *>({}, Qt::FindDirectChildrenOnly);
    ASSERT_NE(title, nullptr);
    const auto *mark = window->findChild<QMenuBar *>()->findChild<QLabel *>();
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->geometry(), QRect(440, 1, 20, 20));
    EXPECT_EQ(mark->parentWidget()->size(), QSize(900, 50));
}

TEST_F(Host, StartsInAWindowWithoutATitleRow)
{
    delegate->window()->setMenuWidget(nullptr);
    services.addFixture(u"StatusFixture"_s, services.resources());
    delegate->applicationDidFinishLaunching();
    EXPECT_TRUE(services.recorder.take().filter(u"v5-title-blu"_s).isEmpty());
    services.runScheduled();
    EXPECT_EQ(delegate->window()->menuWidget(), nullptr) << "nobody has made an empty one";
    EXPECT_EQ(shownView(), u"plugin.status"_s);
    EXPECT_TRUE(list()->isVisibleTo(window.get()));
}

TEST_F(Host, StartsWithoutAWindow)
{
    window.reset();
    services.addFixture(u"Hidden"_s, services.resources());
    start({"StatusFixture"});
    EXPECT_TRUE(delegate->showPlugin(u"plugin.status"_s));
    EXPECT_TRUE(delegate->showPlugin(u"plugin.fixture.Hidden"_s));
    delegate->showMainWindow();
    delegate->uiMaximize();
    delegate->uiRestore();
    delegate->pluginSetProcessing(u"plugin.status"_s, true);
    delegate->windowShouldClose(nullptr);
    EXPECT_EQ(delegate->uiSystemStatusView(), nullptr);
}

TEST_F(Host, OutlivesItsWindow)
{
    start({"StatusFixture", "Good"});
    EXPECT_EQ(shownView(), u"plugin.status"_s);
    window.reset();
    EXPECT_TRUE(delegate->showPlugin(u"plugin.fixture.Good"_s));
    delegate->pluginSetBadge(u"plugin.status"_s, 3);
    delegate->setAllPluginsProcessing(true);
    delegate->applicationShouldHandleReopen(nullptr, false);
}

TEST_F(Host, AnswersAPluginThatUsesEverythingFromItsInitialiser)
{
    services.addFixture(u"UsesEverythingAtOnce"_s, services.resources());
    delegate->applicationDidFinishLaunching();
    services.runScheduled();
    QCoreApplication::processEvents();
    const QStringList events = services.recorder.take();
    for (const QString &what : {u"mndVersion 6"_s, u"helpers true"_s, u"uiTheme #ffffff"_s})
        EXPECT_TRUE(events.contains(what)) << qPrintable(what);
    EXPECT_TRUE(delegate->plugins()->listContainsID(u"plugin.fixture.UsesEverythingAtOnce"_s));
    EXPECT_FALSE(delegate->uiModalShowing());
}

TEST_F(Host, TellsPluginsThroughTheirDeclaredRolesOnly)
{
    start({"Good", "NotADelegate", "ThrowsInCallbacks"});
    delegate->signalAllPlugins(Selector(u"ping"_s));
    delegate->signalAllPlugins(Selector(u"onViewHide"_s));
    delegate->signalAllPlugins(Selector(u"unknown"_s));
    EXPECT_EQ(
        services.recorder.take(),
        (QStringList{u"plugin.fixture.Good ping"_s, u"plugin.fixture.ThrowsInCallbacks ping"_s,
                     u"syslog ping of FixturePlugin threw an exception: callback of the "
                     "fixture"_s,
                     u"plugin.fixture.Good onViewHide"_s,
                     u"plugin.fixture.ThrowsInCallbacks onViewHide"_s,
                     u"syslog onViewHide of a plugin threw an exception: callback of the "
                     "fixture"_s}));
    delegate.reset();
    EXPECT_EQ(services.recorder.take(),
              (QStringList{u"plugin.fixture.ThrowsInCallbacks destroyed"_s,
                           u"plugin.fixture.Good destroyed"_s}));
}

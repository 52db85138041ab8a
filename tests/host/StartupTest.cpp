#include "host/HostFixture.h"
#include "platform/ui/ProgressIndicator.h"

namespace {

/// Notes when the watched view is shown and hidden.
struct VisibilityNotes : QObject
{
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent)
            recorder->note(u"sidebar shown"_s);
        if (event->type() == QEvent::HideToParent)
            recorder->note(u"sidebar hidden"_s);
        return false;
    }
    Recorder *recorder = nullptr;
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
    VisibilityNotes visibility;
    visibility.recorder = &services.recorder;
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
    const QString logged = u"syslog 16/11/2026 00:45 mndAppDelegate::"_s;
    EXPECT_EQ(steps.join(u'|').remove(logged).remove(u'\n'),
              u"resource en.strings|menu about|"
              "stringResource:def::1373 Unable to get SZ_MENU_QUIT|load slvFeedback|"
              "resource v5-title-blu.svg|resource v5-title-blu.png|resources *.bundle|"
              "plugin.fixture.Good initialize Good.bundle|"
              "plugin.status initialize StatusFixture.bundle|"
              "stringResource:def::1373 Unable to get SZ_HEADING_ONLINE|"
              "showPlugin::216 plugin.status|plugin.fixture.Good onViewHide|"
              "plugin.status onViewHide|plugin.status onViewShow|load About|load Prefs|"
              "sidebar hidden|after 0.1|applicationDidFinishLaunching::847 Loaded v512 (2)"_s);
    EXPECT_TRUE(item("miExtendedLoggingEnable")->isChecked());

    services.runScheduled();
    EXPECT_EQ(services.recorder.take().join(u'|'),
              u"plugin.fixture.Good onAllPluginsLoaded|plugin.status onAllPluginsLoaded|later|"
              "after 0.1|sidebar shown"_s);
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
    const QString items =
        u"miAbout=MENU_ABOUT miPrefs=MENU_PREFS miPrefsReset=MENU_PREFS_RESET "
        "miFeedback=MENU_FEEDBACK miCheckForUpdate=MENU_UPDATE miServices=MENU_SERVICES "
        "miHideSolvane=MENU_HIDE miHideOthers=MENU_HIDE_OTHERS miShowAll=MENU_SHOW_ALL "
        "miQuit=MENU_QUIT miMinimize=MENU_MINIMIZE miZoom=MENU_ZOOM "
        "miBringToFront=MENU_BRING_ALL_TO_FRONT miShowMainWindow=MENU_SHOW_MAIN_WINDOW "
        "miHelp=MENU_HELP miHelpLink=MENU_HELP_ITEM miExtendedLogging=EXTENDED_LOGGING "
        "miExtendedLoggingEnable=EXTENDED_LOGGING_ENABLE miExtendedLoggingSend=REVEAL_LOG"_s;
    QString file = u"SZ_MENU_WINDOW = \"of & MENU_WINDOW\";"_s;
    for (const QString &each : items.split(u' '))
        file += u"SZ_%1 = \"of & %1\";"_s.arg(each.section(u'=', 1));
    services.addResource(u"en.strings"_s, file.toUtf8());
    const QString windowEntry = item("miWindow")->text();
    start();
    for (const QString &each : items.split(u' '))
        EXPECT_EQ(item(qPrintable(each.section(u'=', 0, 0)))->iconText(),
                  u"of & "_s + each.section(u'=', 1));
    const auto topLevel = delegate->window()->menuBar()->actions();
    ASSERT_EQ(topLevel.size(), 3);
    EXPECT_EQ(topLevel[1]->iconText(), u"of & MENU_WINDOW"_s);
    EXPECT_EQ(item("miWindow")->text(), windowEntry) << "the entry itself is not retitled";
    EXPECT_EQ(topLevel[2]->iconText(), u"of & MENU_HELP"_s);
}

TEST_F(Host, KeepsDesignedMenuTextsWithoutTheirKeysButForThree)
{
    QList<QAction *> items;
    for (const char *name :
         {"miQuit", "miExtendedLogging", "miExtendedLoggingEnable", "miExtendedLoggingSend"})
        (items << item(name)).last()->setText(u"designed"_s);
    start();
    QStringList texts;
    for (const QAction *each : items)
        texts << each->text();
    EXPECT_EQ(texts.join(u'|'),
              u"designed|Extended logging|Enable extended logging|Reveal logfile"_s);
}

TEST_F(Host, ShowsHeadingsGroundsAndMarkWithoutAnyPlugin)
{
    window->resize(900, 600);
    start();
    ASSERT_EQ(list()->numberOfRows(), 5);
    for (int row = 0; row < 5; ++row)
        EXPECT_FALSE(delegate->sourceListIsItemExpandable(list(), list()->itemAtRow(row)));
    EXPECT_TRUE(list()->selectedRowIndexes().empty() && !list()->isHidden());
    EXPECT_TRUE(shownView().isEmpty());
    EXPECT_EQ(window->palette().color(QPalette::Window), Qt::white);
    EXPECT_EQ(list()->parentWidget()->palette().color(QPalette::Window).name(), u"#a8d6f2"_s);
    EXPECT_EQ(list()->backgroundColor().name(), u"#a8d6f2"_s);
    delegate->window()->setBackgroundColor(Qt::red);
    EXPECT_EQ(window->findChild<QMenuBar *>()->palette().color(QPalette::Window), Qt::red)
        << "the window's ground shows through the title row";
    const mndTheme &theme = *delegate->uiTheme();
    EXPECT_EQ(theme.backgroundColor().name(QColor::HexArgb), u"#ffffffff"_s);
    EXPECT_EQ(theme.sidebarColor().name(QColor::HexArgb), u"#ffa8d6f2"_s);
    EXPECT_EQ(theme.sidebarFontColor().name(QColor::HexArgb), u"#ff000000"_s);
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

TEST_F(Host, AnswersPluginsThatUseEverythingFromTheirInitialisers)
{
    services.cpuCount = 3;
    services.addFixture(u"UsesEverythingAtOnce"_s, services.resources());
    services.addFixture(u"UsesHelpers"_s, services.resources());
    delegate->applicationDidFinishLaunching();
    services.runScheduled();
    QCoreApplication::processEvents();
    const QStringList events = services.recorder.take();
    for (const QString &what :
         {u"mndVersion 6"_s, u"helpers true"_s, u"uiTheme #ffffff"_s, u"list 1 /opt/keep"_s,
          u"bundle plugin.fixture.UsesHelpers"_s, u"session 0"_s, u"files some"_s})
        EXPECT_TRUE(events.contains(what)) << qPrintable(what);
    EXPECT_EQ(events.filter(u"machine 3"_s).size(), 1);
    EXPECT_TRUE(delegate->plugins()->listContainsID(u"plugin.fixture.UsesEverythingAtOnce"_s));
    EXPECT_FALSE(delegate->uiModalShowing());
}

TEST_F(Host, TellsPluginsThroughTheirDeclaredRolesOnly)
{
    start({"Good", "NotADelegate", "ThrowsInCallbacks"});
    for (const QString &message : {u"ping"_s, u"onViewHide"_s, u"unknown"_s})
        delegate->signalAllPlugins(Selector(message));
    EXPECT_EQ(services.recorder.take().join(u'|'),
              u"plugin.fixture.Good ping|plugin.fixture.ThrowsInCallbacks ping|"
              "syslog ping of FixturePlugin threw an exception: callback of the fixture|"
              "plugin.fixture.Good onViewHide|plugin.fixture.ThrowsInCallbacks onViewHide|"
              "syslog onViewHide of a plugin threw an exception: callback of the fixture"_s);
    delegate.reset();
    EXPECT_EQ(services.recorder.take().join(u'|'),
              u"plugin.fixture.ThrowsInCallbacks destroyed|plugin.fixture.Good destroyed"_s);
}

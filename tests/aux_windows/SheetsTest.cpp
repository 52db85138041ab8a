#include "aux_windows/mndAbout.h"
#include "aux_windows/mndPrefs.h"
#include "aux_windows/slvFeedback.h"
#include "helpers/loginItems.h"
#include "host/HostFixture.h"

#include <QSlider>

/// A host whose sheets are opened by their menu entries.
struct Sheets : Host
{
    Sheets()
    {
        services.addResource(u"../Info.plist"_s,
                             "{ CFBundleVersion = 512; CFBundleExecutable = solvane; }");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(services.home.filePath(u"conf"_s)));
    }
    ~Sheets() override { systemServices().edition = 2; }

    /// The program that an entry for the start at login would run.
    void addProgram() const
    {
        QFile program(makeFile(services.root.filePath(u"Solvane.app/Contents/MacOS/solvane"_s),
                               "#!/bin/true\n"));
        program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    void open(const char *entry)
    {
        ASSERT_TRUE(activate(*window));
        item(entry)->trigger();
        QCoreApplication::processEvents();
        services.runScheduled();
        services.recorder.take();
    }
    QString text(const char *name) const
    {
        return part(name) ? part(name)->text() : u"not shown"_s;
    }
    void pressEscape() const
    {
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        QCoreApplication::processEvents();
    }
};

TEST_F(Sheets, OfThePreferencesTakeTheirTextsFromTheLanguageFile)
{
    start();
    open("miPrefs");
    const auto texts = [this] {
        QStringList all{part<QCheckBox>("cbAutolaunch")->text()};
        for (const char *name : {"lblTitle", "lblAutolaunch", "lblClose", "lblDelay",
                                 "lblDelayInfo", "lblDelayMin", "lblDelayMax"})
            all << text(name).left(90);
        return all.join(u'|');
    };
    EXPECT_EQ(texts(),
              u"&Start Solvane at login|Preferences|Solvane starts by itself each time you log in.|"
              "Close|Forced delay|How long you have to wait before you can confirm an action that "
              "cannot be undone.|2s|15s"_s)
        << "without a key, as designed";
    EXPECT_EQ(part<QSlider>("sliderDelay")->minimum(), 2);
    EXPECT_EQ(part<QSlider>("sliderDelay")->maximum(), 15);
    EXPECT_EQ(part<QCheckBox>("cbAutolaunch")->palette().color(QPalette::WindowText), Qt::black);
    pressEscape();

    ASSERT_EQ(part("lblTitle"), nullptr);
    services.addResource(u"en.strings"_s,
                         "SZ_PREFS_TITLE = T; SZ_PREFS_AUTOLAUNCH = \"A & B\"; SZ_CLOSE = C; "
                         "SZ_PREFS_AUTOLAUNCH_INFO = I; SZ_PREFS_DELAY = D; "
                         "SZ_PREFS_SECONDS_MIN = L; SZ_PREFS_SECONDS_MAX = M; "
                         "SZ_PREFS_SECONDS = \"%d!\"; SZ_PREFS_DELAY_INFO = \""
                             + QByteArray("long words ").repeated(200) + "\";");
    delegate->applicationDidFinishLaunching();
    services.runScheduled();
    open("miPrefs");
    EXPECT_EQ(texts(), u"&A && B|T|I|C|D|%1|L|M"_s.arg(u"long words "_s.repeated(9).left(90)));
    EXPECT_EQ(text("lblDelayValue"), u"10!"_s);
    EXPECT_GT(part("lblTitle")->parentWidget()->height(), 330)
        << "as designed: long texts get the room they need";
    QAccessibleInterface *spoken =
        QAccessible::queryAccessibleInterface(part<QSlider>("sliderDelay"));
    EXPECT_EQ(spoken->text(QAccessible::Name), u"D"_s);
    EXPECT_TRUE(spoken->text(QAccessible::Description).startsWith(u"10!. long"_s));
}

TEST_F(Sheets, OfThePreferencesOpenAtTheStoredDelayAndStoreWhatIsChosen)
{
    const QString key = u"slvCritical.delay"_s;
    start();
    QString before = u"10s"_s; // as designed
    window->show();
    for (const auto &[value, shown] :
         {std::pair<QVariant, int>{15, 15}, {u"8"_s, 8}, {20, 10}, {{}, 10}}) {
        services.defaults[key] = value;
        item("miPrefs")->trigger();
        QCoreApplication::processEvents();
        EXPECT_EQ(std::exchange(before, u"%1s"_s.arg(shown)), text("lblDelayValue")) << "not yet";
        EXPECT_TRUE(services.recorder.take().contains(u"after 0.01"_s));
        services.runScheduled();
        EXPECT_EQ(part<QSlider>("sliderDelay")->value(), shown) << qPrintable(value.toString());
        EXPECT_EQ(text("lblDelayValue"), u"%1s"_s.arg(shown));
        EXPECT_EQ(services.defaults[key], value) << "looking stores nothing";
        pressEscape();
        ASSERT_EQ(part("lblTitle"), nullptr);
    }
    open("miPrefs");
    part<QSlider>("sliderDelay")->setFocus();
    QTest::keyClick(window->focusWidget(), Qt::Key_Right);
    EXPECT_EQ(services.defaults[key], QVariant(11));
    EXPECT_EQ(text("lblDelayValue"), u"11s"_s);
    EXPECT_EQ(services.recorder.take().value(0), u"synchronize later"_s);
    for (const bool isWritten : {false, true, false}) {
        services.defaultsAreWritten = isWritten;
        QTest::keyClick(window->focusWidget(), isWritten ? Qt::Key_Home : Qt::Key_End);
        QCoreApplication::processEvents();
        EXPECT_EQ(part("lblDelayFailed")->isVisible(), !isWritten);
        EXPECT_EQ(services.recorder.take().contains(
                      u"syslog The setting slvCritical.delay could not be written."_s),
                  !isWritten);
    }
    pressEscape();
    open("miPrefs");
    EXPECT_FALSE(part("lblDelayFailed")->isVisible());
    part<QSlider>("sliderDelay")->setFocus();
    QTest::keyClick(window->focusWidget(), Qt::Key_Right);
    EXPECT_EQ(services.defaults[key], QVariant(15));
}

TEST_F(Sheets, OfThePreferencesSwitchTheStartAtLogin)
{
    addProgram();
    start();
    open("miPrefs");
    const auto box = [this] { return part<QCheckBox>("cbAutolaunch"); };
    box()->click();
    EXPECT_TRUE(box()->isChecked() && !part("lblAutolaunchFailed")->isVisible());
    pressEscape();
    // Switched off in the desktop's own settings.
    const QString entry = services.home.filePath(u"conf/autostart/com.solvane.Solvane.desktop"_s);
    makeFile(entry, fileContent(entry).replace("enabled=true\n", "enabled=false\n"));
    open("miPrefs");
    EXPECT_FALSE(box()->isChecked());

    // There is a file where the folder would have to be.
    QDir(services.home.filePath(u"conf"_s)).removeRecursively();
    makeFile(services.home.filePath(u"conf"_s), {});
    box()->click();
    EXPECT_FALSE(box()->isChecked()) << "it shows what is so";
    EXPECT_TRUE(part("lblAutolaunchFailed")->isVisible());
    pressEscape();
    open("miPrefs");
    EXPECT_FALSE(part("lblAutolaunchFailed")->isVisible());
}

TEST_F(Sheets, OfTheStoreEditionHaveAPictureInThePlaceOfTheStartAtLogin)
{
    systemServices().edition = 1;
    services.defaults[u"slv.sandbox.home"_s] = services.home.path();
    addProgram();
    loginItems().setLaunchOnLogin(true);
    ASSERT_TRUE(loginItems().launchOnLogin());
    start();
    open("miPrefs");
    EXPECT_FALSE(part<QCheckBox>("cbAutolaunch")->isChecked()) << "nobody looks";
    EXPECT_FALSE(part<QCheckBox>("cbAutolaunch")->isVisible());
    EXPECT_FALSE(part("lblAutolaunch")->isVisible());
    EXPECT_TRUE(part<QWidget>("imgHolder")->isVisible());
    pressEscape();
    open("miAbout");
    EXPECT_EQ(text("lblEdition"), u"Mac App Store Edition"_s);
}

TEST_F(Sheets, OfTheAboutEntryTellWhatThisIs)
{
    start();
    for (const auto &[starts, opens] : {std::pair{true, true}, {true, false}, {false, false}}) {
        services.workspaceOpens = starts;
        services.openerFails = starts && !opens;
        open("miAbout");
        EXPECT_EQ(text("lblVersion"), u"Version 512"_s);
        part("lblLink")->setFocus();
        QTest::keyClick(window->focusWidget(), Qt::Key_Return);
        QTest::keyClick(window->focusWidget(), Qt::Key_Return);
        const QRegularExpression visible(u"url|alert"_s);
        EXPECT_EQ(services.recorder.take().filter(visible), QStringList()) << "not yet";
        bool wasShown = true;
        services.onUrlOpened = [&] { wasShown = part("lblLink"); };
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        services.onUrlOpened = {};
        EXPECT_FALSE(wasShown) << "the sheet goes first";
        const QStringList told = services.recorder.take().filter(visible);
        EXPECT_EQ(told.value(0), u"open url http://www.solvane.example"_s);
        EXPECT_EQ(told.size(), opens ? 1 : 2) << "pressed twice, told once";
        EXPECT_EQ(told.value(1).endsWith(u"visit this page with a browser of your choice:\n\n"
                                         "http://www.solvane.example|OK|"_s),
                  !opens);
        EXPECT_EQ(part("lblLink"), nullptr);
        EXPECT_FALSE(delegate->uiModalShowing()) << "pressed twice, counted once";
    }
}

TEST_F(Sheets, ThatAreMissingCannotBeOpened)
{
    InterfaceFile::remove(u"About"_s);
    InterfaceFile::remove(u"Prefs"_s);
    start();
    EXPECT_FALSE(item("miAbout")->isEnabled());
    EXPECT_FALSE(item("miPrefs")->isEnabled());
}

TEST_F(Sheets, LieOnWhiteWhateverTheDesktopsColours)
{
    start();
    ASSERT_NE(QApplication::palette().color(QPalette::Window), Qt::white);
    const mndAbout about;
    const mndPrefs prefs;
    const slvFeedback feedback;
    for (QWidget *sheet : {about.window(), prefs.window(), feedback.window()}) {
        const QImage picture = sheet->grab().toImage();
        EXPECT_EQ(picture.pixelColor(picture.rect().bottomLeft()).name(), u"#ffffff"_s);
    }
}

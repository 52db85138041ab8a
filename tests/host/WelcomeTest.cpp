#include "host/FolderBookmark.h"
#include "host/HostFixture.h"
#include "platform/foundation/RealFileSystem.h"
#include "platform/ui/ModalLoop.h"
#include "plugin_host/PluginLoadReport.h"

#include <QScopedValueRollback>
#include <QTabWidget>

/// A host of the store edition whose user does one thing after the other.
struct StoreEdition : Host
{
    StoreEdition()
    {
        systemServices().edition = 1;
        services.actualHome = accountHome.path();
        window->show();
    }
    ~StoreEdition() override { systemServices().edition = 2; }

    /// Past the first question, and as if it had never been asked.
    void startWelcomed()
    {
        services.defaults[u"slv.sandbox.home"_s] = realHome();
        start();
        services.defaults.clear();
    }

    QString realHome() const { return services.actualHome; }

    void press(const char *name) const { QTest::mouseClick(part<QWidget>(name), Qt::LeftButton); }

    /// What the user does when the welcome window has come up.
    void whenWelcomed(const std::function<void()> &act)
    {
        QTimer::singleShot(0, window.get(), [this, act] {
            if (part<QWidget>("tvWelcomeMain"))
                return act();
            ADD_FAILURE() << "the welcome window does not show";
            ModalLoop::stopModal();
        });
    }
    QTemporaryDir accountHome; ///< not where HOME points to
};

TEST_F(StoreEdition, AsksForTheHomeFolderUntilItIsTheRightOne)
{
    services.addResource(u"en.strings"_s,
                         "SZ_NEXT = \"Go & go\"; SZ_HOME_ERROR_DESC = \"%@ %@ %@\";");
    services.chosenFolders = {u"/tmp/wrong"_s, realHome() + u'/', QString(), realHome().toUpper()};
    const QString question = u"choose Please select your home directory|"_s + realHome();
    const QString alert = u"alert Selection is not your home folder|%1 %2 %1|OK|"_s;
    bool isDone = false;
    whenWelcomed([&] {
        const auto *pages = part<QTabWidget>("tvWelcomeMain");
        EXPECT_EQ(pages->currentIndex(), 0);
        EXPECT_FALSE(pages->tabBar()->isVisible());
        EXPECT_FALSE(part<QWidget>("lblExit")->isVisible());
        EXPECT_EQ(part<QPushButton>("btnNext")->text(), u"Go && go"_s);
        EXPECT_EQ(part<QLabel>("lblWelcomeTitle")->text(), u"Welcome to Solvane"_s);
        EXPECT_FALSE(delegate->uiModalShowing()) << "it is not counted";
        press("btnNext");
        EXPECT_EQ(pages->currentIndex(), 1);
        EXPECT_TRUE(part<QWidget>("lblExit")->isVisible());
        press("btnSelect");
        EXPECT_EQ(outside(),
                  (QStringList{question, alert.arg(realHome(), u"/tmp/wrong"_s), question,
                               alert.arg(realHome(), realHome() + u'/'), question}));
        EXPECT_TRUE(ModalLoop::isRunning()) << "cancelled: the window stays";
        EXPECT_TRUE(services.defaults.isEmpty());
        press("btnSelect");
        isDone = true;
    });
    delegate->applicationDidFinishLaunching();
    services.runScheduled();
    EXPECT_TRUE(isDone);
    EXPECT_EQ(part<QWidget>("tvWelcomeMain"), nullptr);
    EXPECT_EQ(services.defaults[u"slv.sandbox.home"_s], realHome().toUpper())
        << "the letter case is free";
    EXPECT_EQ(delegate->getHomeDirectory(), realHome().toUpper()) << "it asks once";
    EXPECT_EQ(delegate->stringByExpandingTildeInPath(u"~/a~b"_s),
              u"%1/a%1b"_s.arg(realHome().toUpper()));
    EXPECT_EQ(delegate->mndEdition(), 1U);
}

TEST_F(StoreEdition, KeepsABookmarkThatResolvesWhileTheFolderExists)
{
    startWelcomed();
    services.chosenFolders = {realHome()};
    window->hide();
    whenWelcomed([&] {
        EXPECT_TRUE(window->isVisible()) << "nobody could answer otherwise";
        press("btnSelect");
    });
    EXPECT_EQ(delegate->getHomeDirectory(), realHome());
    EXPECT_EQ(delegate->loadHomeDirectoryBookmark(), QUrl::fromLocalFile(realHome()));
    QTemporaryDir folder;
    delegate->saveHomeDirectoryBookmark(FolderBookmark::make(folder.path()));
    EXPECT_TRUE(delegate->loadHomeDirectoryBookmark().isValid());
    folder.remove();
    for (const QByteArray &useless :
         {FolderBookmark::make(folder.path()), QByteArray("\xff not an address"),
          QByteArray("http://www.solvane.example/")}) {
        EXPECT_TRUE(delegate->loadHomeDirectoryBookmark().isEmpty());
        delegate->saveHomeDirectoryBookmark(useless);
    }
}

TEST_F(StoreEdition, SpeaksTheUsersLanguageInTheMiddleOfTheScreen)
{
    const std::pair<const char *, const char *> texts[] = {
        {"lblWelcomeTitle", "SZ_WELCOME_TITLE"},
        {"lblWelcomeDesc", "SZ_WELCOME_DESC"},
        {"btnNext", "SZ_NEXT"},
        {"lblWelcomePrompt", "SZ_HOME_PROMPT"},
        {"lblWelcomePromptDesc", "SZ_HOME_PROMPT_DESC"},
        {"btnSelect", "SZ_HOME_SELECT"},
        {"lblExit", "SZ_WELCOME_DENY"},
    };
    QByteArray file = "SZ_HOME_POLITE = polite; SZ_HOME_ERROR_TITLE = wrong;";
    for (const auto &[name, key] : texts)
        file += QByteArray(key) + " = \"of " + key + "\";";
    services.addResource(u"en.strings"_s, file);
    struct UsualFolders : RealFileSystem
    {
        bool exists(const QString &path) const override { return path == "/Users/tester"_L1; }
    } folders;
    startWelcomed();
    const QScopedValueRollback<FileSystem *> files(systemServices().fileSystem, &folders);
    services.chosenFolders = {u"/wrong"_s, realHome()};
    window->move(3, 4);
    whenWelcomed([&] {
        EXPECT_EQ(window->frameGeometry().center(), services.visibleFrame.center());
        for (const auto &[name, key] : texts)
            EXPECT_EQ(part<QWidget>(name)->property("text"), u"of "_s + QLatin1StringView(key));
        press("btnSelect");
    });
    delegate->getHomeDirectory();
    const QString question = u"choose polite|/Users/tester"_s;
    const QStringList heard = outside();
    EXPECT_EQ(heard.value(0), question);
    EXPECT_TRUE(heard.value(1).startsWith("alert wrong|"_L1));
    EXPECT_EQ(heard.value(2), question);
}

TEST_F(StoreEdition, AsksInFrontOfASheetThatComesBackAfterwards)
{
    startWelcomed();
    services.chosenFolders = {realHome()};
    QWidget sheet;
    QWidget later;
    delegate->beginModalSheet(&sheet);
    QCoreApplication::processEvents();
    EXPECT_TRUE(sheet.isVisible());
    whenWelcomed([&] {
        EXPECT_TRUE(part<QWidget>("tvWelcomeMain")->isVisible());
        EXPECT_FALSE(sheet.isVisible());
        delegate->_beginModalSheet(&later, MainWindow::InTurn);
        EXPECT_FALSE(later.isVisible());
        press("btnSelect");
    });
    EXPECT_EQ(delegate->getHomeDirectory(), realHome());
    for (QWidget *next : {&sheet, &later}) {
        QCoreApplication::processEvents();
        EXPECT_TRUE(next->isVisible());
        delegate->endModalSheet(next);
        QCoreApplication::processEvents();
        EXPECT_TRUE(next->isHidden());
    }
}

TEST_F(StoreEdition, EndsTheProgramForAUserWhoRefuses)
{
    startWelcomed();
    Welcome welcome;
    whenWelcomed([&] {
        welcome.tbPressed(u"Something else"_s);
        EXPECT_EQ(outside(), QStringList());
        welcome.tbPressed(u"Next"_s);
        welcome.tbPressed(u"Select Home Folder"_s);
        EXPECT_EQ(outside().size(), 1) << "where it is, cancelled";
        welcome.tbPressed(u"Disallow access and exit"_s);
    });
    EXPECT_FALSE(welcome.show());
    EXPECT_EQ(outside(), QStringList{u"exit 0"_s});
}

TEST_F(StoreEdition, LetsEveryoneWaitForTheOneAnswer)
{
    startWelcomed();
    services.chosenFolders = {realHome()};
    QStringList answers;
    std::thread worker;
    std::atomic<pid_t> asking = 0;
    QTimer pressing;
    QObject::connect(&pressing, &QTimer::timeout, [&] {
        if (asking && isAsleep(asking))
            pressing.stop(), press("btnSelect");
    });
    whenWelcomed([&] {
        // A plugin's timer asks while the window shows, and so does a thread.
        worker = std::thread([&] {
            asking = ::gettid();
            const QString answer = delegate->getHomeDirectory();
            QMetaObject::invokeMethod(qApp, [&, answer] { answers << answer; });
        });
        pressing.start(0);
        answers << delegate->getHomeDirectory();
    });
    answers << delegate->getHomeDirectory();
    EXPECT_SOON(answers.size() == 3);
    worker.join();
    EXPECT_EQ(answers, QStringList(3, realHome()));
    EXPECT_FALSE(ModalLoop::isRunning());
}

TEST_F(StoreEdition, AsksNobodyInADiagnosis)
{
    delegate->setAsksNobody();
    start();
    EXPECT_TRUE(delegate->getHomeDirectory().isNull());
}

TEST_F(StoreEdition, DoesWithoutAWindowToAskIn)
{
    InterfaceFile::remove(u"Welcome"_s);
    start();
    EXPECT_TRUE(delegate->getHomeDirectory().isNull());
    EXPECT_TRUE(delegate->stringByExpandingTildeInPath(u"~/x"_s).isNull()) << "not /x";
    EXPECT_EQ(delegate->stringByExpandingTildeInPath(u"/x"_s), u"/x"_s);
    EXPECT_FALSE(delegate->isHomeDirectory({}));
}

TEST_F(Host, OfTheWebEditionAsksNobodyForTheHomeFolder)
{
    start();
    services.defaults[u"slv.sandbox.home"_s] = u"/elsewhere"_s;
    services.actualHome = u"/home/Of The Account"_s;
    EXPECT_EQ(delegate->getHomeDirectory(), services.home.path());
    EXPECT_EQ(delegate->mndEdition(), 2U);
    EXPECT_FALSE(delegate->isHomeDirectory(services.home.path()));
    EXPECT_TRUE(delegate->isHomeDirectory(u"/home/of the account"_s));
    EXPECT_FALSE(delegate->isHomeDirectory(u"/home/Of The Account/"_s));
    EXPECT_FALSE(delegate->isHomeDirectory({}));
    services.actualHome = QString();
    EXPECT_DEATH((void)delegate->actualHomeDirectory(), "assertion failed: pw");
}

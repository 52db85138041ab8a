#include "host/HostFixture.h"

namespace {

struct ThrowsAtBirth : QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE ThrowsAtBirth() { throw std::runtime_error("no"); }
};

struct Services : Host
{
    Services() { window->show(); }

    bool sidebarAndSheetShow(const QWidget &sheet) const
    {
        return sheet.isVisible() && sheet.window() == window.get() && list()->isVisible();
    }
    void send(const char *selector)
    {
        delegate->signalAllPlugins(Selector(QString::fromLatin1(selector)));
    }
};

} // namespace

TEST_F(Services, AnswerAPluginThatUsesThemAll)
{
    window->resize(800, 600);
    start({"UsesEverything", "StatusFixture"});
    window->hide();
    services.recorder.take();
    send("useObjectsAndRow");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(services.recorder.take().join(u'|'),
              u"mndVersion 6|mndEdition 2|slvBundleVersionString v512|newFactoryInstance true|"
              "sharedObject true|helpers true|plugin.status ping|ping|"
              "plugin.status onViewHide|showPlugin true|pluginSetIconHighlighted true"_s);
    const int width = window->frameGeometry().width();
    send("useWindow");
    EXPECT_EQ(services.recorder.take().join(u'|').section(u'?', 0, 0),
              u"uiModalShowing true|newDrawerWithContent false|"
              "newDrawerWithContent:preferredEdge: true|uiButtonSetTextColor #ff0000|"
              "uiMaximize 1600|uiRestore %1|uiSystemStatusView true|"
              "open url https://feedback.solvane.example/inapp-feedback-v5"_s.arg(width));
    send("useHomeAndTexts");
    EXPECT_EQ(services.recorder.take().join(u'|'),
              u"isHomeDirectory true|synchronize later|synchronize "
              u"later|stringByExpandingTildeInPath true|"
              "stringResource nothing|localizeLink http://a?b|extendedLoggingValue false|"
              "synchronize later|uiTheme #ffffff"_s);
    EXPECT_EQ(services.defaults[u"slv.sandbox.home"_s], u"/stored"_s);
    EXPECT_EQ(services.defaults[u"slv.sandbox.bookmark"_s], QByteArray("bookmark"));
    EXPECT_TRUE(logLines().last().endsWith("a line"_L1));
    QCoreApplication::processEvents();
}

TEST_F(Services, SayWhatCouldNotBeStored)
{
    start({});
    services.defaultsAreWritten = false;
    delegate->saveHomeDirectory(u"/h"_s);
    delegate->saveHomeDirectoryBookmark("b");
    delegate->setExtendedLoggingValue(false);
    QCoreApplication::processEvents();
    const QStringList said = services.recorder.take();
    for (const QString &key : {u"slv.sandbox.home"_s, u"slv.sandbox.bookmark"_s, u"slvCore.elog"_s})
        EXPECT_TRUE(said.contains(u"syslog The setting %1 could not be written."_s.arg(key)))
            << qPrintable(key);
}

TEST_F(Services, CountSheetsAsTheyAreAskedFor)
{
    start({"StatusFixture"});
    list()->setFocus();
    QWidget sheet, second;
    auto *button = new QPushButton(&sheet);
    delegate->beginModalSheet(&sheet);
    delegate->beginModalSheet(&second);
    EXPECT_TRUE(delegate->uiModalShowing()) << "counted before it shows";
    EXPECT_FALSE(delegate->showPlugin(u"plugin.status"_s));
    EXPECT_FALSE(sheet.isVisible());
    QCoreApplication::processEvents();
    EXPECT_TRUE(sidebarAndSheetShow(sheet));
    EXPECT_FALSE(second.isVisible());
    EXPECT_EQ(button->palette().color(QPalette::ButtonText), Qt::white);
    delegate->endModalSheet(&sheet);
    EXPECT_FALSE(delegate->uiModalShowing()) << "the second was dropped, not counted";
    EXPECT_TRUE(delegate->showPlugin(u"plugin.status"_s));
    QCoreApplication::processEvents();
    EXPECT_TRUE(sheet.isHidden());
    EXPECT_EQ(window->focusWidget(), list());

    delegate->endModalSheet(nullptr);
    EXPECT_TRUE(delegate->uiModalShowing()) << "below zero: stuck, unguarded";
    EXPECT_FALSE(delegate->showPlugin(u"plugin.status"_s));
    delegate->beginModalSheet(&sheet);
    QCoreApplication::processEvents();
    EXPECT_FALSE(sheet.isVisible());
}

TEST_F(Services, TakeSheetsFromThreadsAndFromWhoeverDeletesThem)
{
    start();
    auto sheet = std::make_unique<QWidget>();
    std::thread([&] { delegate->beginModalSheet(sheet.get()); }).join();
    EXPECT_TRUE(delegate->uiModalShowing());
    QCoreApplication::processEvents();
    EXPECT_TRUE(sidebarAndSheetShow(*sheet));
    sheet.reset();
    EXPECT_TRUE(delegate->uiModalShowing()) << "its owner has still to end it";
    std::thread([&] { delegate->endModalSheet(nullptr); }).join();
    QCoreApplication::processEvents();
    EXPECT_FALSE(delegate->uiModalShowing());

    auto gone = std::make_unique<QWidget>();
    delegate->beginModalSheet(gone.get());
    gone.reset();
    delegate->endModalSheet(nullptr);
    delegate->beginModalSheet(window.get());
    delegate->endModalSheet(window.get());
    QCoreApplication::processEvents();

    // Two requests at once may both be counted; then one follows the other.
    QWidget one, two;
    std::thread first([&] { delegate->beginModalSheet(&one); });
    std::thread([&] { delegate->beginModalSheet(&two); }).join();
    first.join();
    EXPECT_TRUE(delegate->uiModalShowing());
    QCoreApplication::processEvents();
    EXPECT_NE(one.isVisible(), two.isVisible());
    while (delegate->uiModalShowing()) {
        delegate->endModalSheet(one.isVisible() ? &one : &two);
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(one.isHidden() && two.isHidden());
}

TEST_F(Services, ShowTheSidebarAgainAlsoWhenASheetThrows)
{
    start();
    /// Tells what it sees while it is asked for its size.
    struct Witness : QWidget
    {
        QSize minimumSizeHint() const override { return onAsked(), QSize(); }
        std::function<void()> onAsked;
    } witness;
    witness.onAsked = [&] {
        if (list()->isVisible())
            ADD_FAILURE() << "it hides before the sheet shows";
        throw std::runtime_error("size");
    };
    EXPECT_THROW(delegate->_beginModalSheet(&witness), std::runtime_error);
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(witness.parentWidget(), nullptr);
    witness.onAsked = [] {};
    delegate->_beginModalSheet(&witness);
    EXPECT_TRUE(sidebarAndSheetShow(witness));
    delegate->_endModalSheet(&witness);
    EXPECT_TRUE(witness.isHidden());
}

TEST_F(Services, FillTheScreenAndGoBackByTheWidthAlone)
{
    services.visibleFrame = {100, 50, 1000, 700};
    window->resize(800, 600);
    delegate->applicationDidFinishLaunching();
    // Only now does the window manager put the window where it belongs.
    window->move(130, 90);
    services.runScheduled();
    const QRect before = window->frameGeometry();
    const int fullWidth = 1000 - before.width() + window->width();
    const auto restored = [this] { return delegate->uiRestore(), window->frameGeometry(); };
    window->resize(fullWidth, 500);
    EXPECT_EQ(restored(), before) << "where it was at the start";
    EXPECT_EQ(restored(), before) << "it only records";
    delegate->uiMaximize();
    EXPECT_EQ(window->frameGeometry(), services.visibleFrame);
    EXPECT_EQ(restored(), before);

    window->move(180, 95);
    const QRect recorded = restored();
    EXPECT_NE(recorded, before);
    window->resize(fullWidth, 500);
    EXPECT_EQ(restored(), recorded) << "as wide as the screen counts as maximised";
}

TEST_F(Services, ShareObjectsByName)
{
    start();
    QObject one;
    auto other = std::make_unique<QObject>();
    delegate->sharedObjectRegister(u"name"_s, &one);
    delegate->sharedObjectRegister(u"name"_s, other.get());
    delegate->sharedObjectRegister({}, &one);
    EXPECT_EQ(delegate->sharedObject(u"name"_s), other.get()) << "the last one counts";
    EXPECT_NE(delegate->sharedObject(u"SHARED.HELPERS"_s), nullptr);
    for (const QString &name : {u"Name"_s, u""_s, QString(), u"never"_s, u"shared.helpers"_s})
        EXPECT_EQ(delegate->sharedObject(name), nullptr) << qPrintable(name);
    other.reset();
    EXPECT_EQ(delegate->sharedObject(u"name"_s), nullptr);
    delegate->sharedObjectRegister(u"name"_s, &one);
    delegate->sharedObjectRegister(u"name"_s, nullptr);
    EXPECT_EQ(delegate->sharedObject(u"name"_s), nullptr);
}

TEST_F(Services, MakeObjectsByTheNamesOfTheirClasses)
{
    qRegisterMetaType<ThrowsAtBirth *>();
    start({"UsesEverything"});
    for (const QString &name : {u"WebView"_s, u"ClassOfABundle"_s})
        EXPECT_NE(delegate->newFactoryInstance(name), nullptr) << qPrintable(name);
    for (const QString &name :
         {u"ThrowsAtBirth"_s, u"NoSuchClass"_s, u"QWidget"_s, u"mndCore"_s, QString()})
        EXPECT_EQ(delegate->newFactoryInstance(name), nullptr) << qPrintable(name);

    // From a thread: an object lives there, a view on the main thread.
    std::unique_ptr<QObject> view;
    onThread([&] {
        view = delegate->newFactoryInstance(u"WebView"_s);
        EXPECT_EQ(delegate->newFactoryInstance(u"ClassOfABundle"_s)->thread(),
                  QThread::currentThread());
        EXPECT_TRUE(delegate->showPlugin(u"plugin.fixture.UsesEverything"_s));
        EXPECT_FALSE(delegate->showPlugin(u"plugin.unknown"_s));
    });
    EXPECT_EQ(view->thread(), qApp->thread());
    EXPECT_EQ(shownView(), u"plugin.fixture.UsesEverything"_s);
}

TEST_F(Services, ReachPluginsThatAreAppendedDuringABroadcast)
{
    start({"Good"});
    services.addFixture(u"Hidden"_s, services.supportFolder());
    services.recorder.onNext = [&] {
        EXPECT_TRUE(delegate->plugins()->loadPluginFromPath(services.supportFolder()
                                                            + u"/Hidden.bundle"_s));
    };
    send("ping");
    EXPECT_EQ(services.recorder.take().join(u'|'),
              u"plugin.fixture.Good ping|plugin.fixture.Hidden initialize Hidden.bundle|"
              "plugin.fixture.Hidden ping"_s);
}

TEST_F(Services, DoNothingBeforeThereIsARegistry)
{
    QPushButton button;
    const QColor before = button.palette().color(QPalette::ButtonText);
    delegate->uiButtonSetTextColor(&button, Qt::red);
    EXPECT_EQ(button.palette().color(QPalette::ButtonText), before);
    delegate->signalAllPlugins(Selector(u"ping"_s));
    EXPECT_FALSE(delegate->showPlugin(u"plugin.status"_s));
}

TEST_F(Services, MakeDrawersThatBelongToTheCaller)
{
    start();
    QWidget content;
    content.setGeometry(30, 40, 120, 90);
    auto *button = new QPushButton(&content);
    std::unique_ptr<Drawer> drawer;
    onThread([&] { drawer = delegate->newDrawerWithContent(&content); });
    EXPECT_EQ(drawer->thread(), qApp->thread());
    EXPECT_EQ(content.geometry(), QRect(0, 0, 120, 90));
    EXPECT_EQ(button->palette().color(QPalette::ButtonText), Qt::white);
    EXPECT_FALSE(drawer->isOpen());
    drawer->open();
    const QWidget *area = window->findChild<QWidget *>(u"content"_s);
    EXPECT_SOON(content.mapTo(area, QPoint(120, 0)).x() == area->width())
        << "it is not at the right-hand edge";
    for (const quint64 edge : {1, 77})
        delegate->newDrawerWithContent(nullptr, edge)->open();
    window.reset();
    EXPECT_FALSE(drawer->isOpen());
    EXPECT_EQ(content.parentWidget(), nullptr);
    delegate->newDrawerWithContent(&content)->toggle();
}

TEST_F(Host, KeepsToItselfWhatATouchBarWouldShow)
{
    start({"StatusFixture"});
    delegate->uiMakeSLVSystemTouchbarWithButtons({u"One"_s}, &services.recorder,
                                                 Selector(u"note:"_s), nullptr);
    delegate->uiRevertToSystemTouchbar();
    EXPECT_FALSE(delegate->makeTouchBar());
    EXPECT_FALSE(TouchBar::installed(window.get()));
    EXPECT_FALSE(delegate->window()->touchBarStrip());
}

#include "ServicesTest.moc"

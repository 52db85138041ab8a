#include "aux_windows/FeedbackAddress.h"
#include "aux_windows/slvFeedback.h"
#include "helpers/HelperProtocols.h"
#include "host/HostFixture.h"
#include "platform/ui/ModalLoop.h"

#include <QAbstractEventDispatcher>

namespace {

struct FixedMachine : QObject, hardwareInfoProtocol
{
    Q_OBJECT
    Q_INTERFACES(hardwareInfoProtocol)
public:
    QString modelName() override { return u" Mac Book  Pro"_s; }
    QString osVersion() override { return u"10.15 (19A)"_s; }
    QString osLanguage() override { return u"not asked"_s; }
    int cpuCount() override { return 8; }
    int cpuSpeed() override { return 2300; }
    int ramSize() override { return 16384; }
    quint64 hdSize(const QString &path) override { return path == u"/"_s ? 500ULL << 30 : 0; }
    quint64 hdFree(const QString &path) override { return path == u"/"_s ? 120ULL << 30 : 0; }
};

/// The host on a machine that never changes.
struct FixedHost : mndAppDelegate
{
    std::unique_ptr<QObject> newFactoryInstance(const QString &className) override
    {
        return className == u"hardwareInfo"_s ? std::make_unique<FixedMachine>() : nullptr;
    }
};

struct Feedback : Host
{
    Feedback()
    {
        delegate = std::make_unique<FixedHost>();
        setApplicationDelegate(delegate.get());
        window = InterfaceFile::load(u"MainMenu"_s, delegate.get());
        services.serialNumber = [] { return QByteArray("XYZ\0\0\0ABC", 9); };
    }
};

} // namespace

TEST_F(Feedback, OpensAnAddressThatTellsElevenThings)
{
    start();
    // 500 GB in the service's own words, without the blank.
    const QString expected =
        u"open url https://feedback.solvane.example/inapp-feedback-v5"
        "?appid=anon-672A3ABBDA6AC899601EBB5E721F2597191B5A99&lang=LANG&appver=v512&apped=EDITION&"
        "mode=PRO&cpu=8@2300&ram=16384&hdd=500.0GB:120.0GB&model=MacBookPro&os=10.15%20(19A)"
        "&runpath=file://ROOT/Solvane.app/"_s;
    for (const auto &[languages, language] : {std::pair{QStringList{u"en"_s}, u"en"_s},
                                              {{u"pt-BR"_s, u"de"_s}, u"pt-BR"_s},
                                              {{}, u"en"_s}}) {
        services.preferredLanguages = languages;
        for (const quint64 edition : {2, 1}) {
            systemServices().edition = edition;
            item("miFeedback")->trigger();
            QString address = expected;
            address.replace(u"LANG"_s, language)
                .replace(u"ROOT"_s, services.root.path())
                .replace(u"EDITION"_s, edition == 2 ? u"WWW"_s : u"MAS"_s);
            EXPECT_EQ(outside(), QStringList{address});
        }
    }
    delegate->uiSendFeedback();
    EXPECT_EQ(outside().size(), 1) << "as often as it is asked for";
    services.workspaceOpens = false;
    item("miFeedback")->trigger();
    EXPECT_EQ(
        outside().value(1),
        u"alert Solvane|No web browser could be opened. You can visit this page with a browser "
        "of your choice:\n\nhttps://feedback.solvane.example/inapp-feedback-v5|OK|"_s);
}

TEST(FeedbackAddress, TakesTheFactsAsTheyAre)
{
    const std::pair<FeedbackFacts, QString> cases[] = {
        {{}, u"?appid=&lang=&appver=&apped=&mode=PRO&cpu=&ram=&hdd=&model=&os=&runpath="_s},
        {{.appid = u"a"_s, .model = u"B&W#1%\"\n"_s, .path = u"file:///a%20b/"_s},
         u"?appid=a&lang=&appver=&apped=&mode=PRO&cpu=&ram=&hdd=&model=B&W#1%\"\n&os=&runpath="
         "file:///a%20b/"_s},
        {{.appid = u"%path%"_s, .model = u"%appid%%os%"_s, .os = u"o"_s, .path = u"p"_s},
         u"?appid=p&lang=&appver=&apped=&mode=PRO&cpu=&ram=&hdd=&model=%appid%o&os=o&runpath=p"_s},
    };
    for (const auto &[facts, query] : cases)
        EXPECT_EQ(feedbackAddress(facts),
                  u"https://feedback.solvane.example/inapp-feedback-v5"_s + query);
}

TEST_F(Feedback, OpensNothingThatIsNoAddress)
{
    start();
    slvFeedback feedback;
    feedback.open(u""_s);
    EXPECT_EQ(outside(), QStringList());
    for (const QString &address : {u""_s, u"http://"_s, u"https:///path"_s, u"no scheme"_s,
                                   u"/path"_s, u"https://a/?model=\"x\""_s, u"https://a/?m=x\ny"_s,
                                   u"https://a/?m=100%"_s, u"https://a b/"_s}) {
        feedback.navigateTo(address);
        EXPECT_EQ(outside(), QStringList()) << qPrintable(address);
    }
    feedback.open(u"docs/page"_s);
    EXPECT_EQ(outside(), QStringList{u"open url http://docs/page"_s});
    for (const QString &address : {u"https://a/?model=B&W#1"_s, u"https://a/?model=Büro機"_s}) {
        feedback.navigateTo(address);
        EXPECT_EQ(outside(), QStringList{u"open url "_s + address});
    }
}

TEST_F(Feedback, IsNoWayToFloodTheUser)
{
    start();
    services.workspaceOpens = false;
    slvFeedback feedback;
    services.recorder.onNext = [&] { // and then, while the alert shows:
        services.recorder.onNext = [&] { feedback.open(u"second"_s); };
    };
    feedback.open(u"first"_s);
    const QStringList seen = outside();
    EXPECT_EQ(seen.filter(u"open url http://"_s).size(), 2);
    EXPECT_EQ(seen.filter(u"alert"_s).size(), 1);
    for (int i = 0; i < 9; ++i)
        feedback.open(u"another"_s);
    EXPECT_EQ(outside().filter(u"alert"_s).size(), 3) << "five in all";
    feedback.navigateTo(QString(9000, u'ü'));
    EXPECT_LT(services.recorder.take().join(QString()).size(), 300);
}

TEST_F(Feedback, KeepsItsPageToItsOwnOrigin)
{
    start();
    slvFeedback feedback;
    auto *view = feedback.property("_webview").value<WebView *>();
    view->loadAddress(u"https://a.example/start"_s);
    for (const auto &[address, may] : {std::pair{"https://a.example/other?x", true},
                                       {"https://a.example:443/", true},
                                       {"https://a.example:444/", false},
                                       {"http://a.example/", false},
                                       {"http://a.example:443/", false},
                                       {"https://b.example/", false},
                                       {"data:text/html,x", false}}) {
        EXPECT_EQ(feedback.webViewMayNavigate(view, QUrl(QString::fromLatin1(address)), true), may)
            << address;
    }
}

TEST_F(Feedback, WithoutItsInterfaceFileDoesNothing)
{
    InterfaceFile::remove(u"slvFeedback"_s);
    start();
    EXPECT_FALSE(item("miFeedback")->isEnabled());
    delegate->uiSendFeedback();
    slvFeedback feedback;
    feedback.refresh();
    feedback.show();
    feedback.hide();
    EXPECT_EQ(outside(), QStringList());
}

TEST_F(Feedback, LetsItsPageDoLittle)
{
    services.addResource(u"en.strings"_s, "SZ_SUPPORT_FEEDBACK = Opinion;");
    start();
    services.recorder.take();
    slvFeedback feedback;
    auto *view = feedback.property("_webview").value<WebView *>();
    EXPECT_EQ(feedback.window()->windowTitle() + view->accessibleName(), u"OpinionOpinion"_s);
    EXPECT_EQ(feedback.webViewDragDestinationActionMask(view), 0U);
    EXPECT_EQ(feedback.webViewDragSourceActionMask(view), 0U);
    EXPECT_EQ(feedback.webViewContextMenuItems(view, {u"Copy"_s}), QStringList());
    for (const bool start : {false, true}) {
        for (const bool end : {false, true})
            EXPECT_EQ(feedback.webViewShouldChangeSelectedDOMRange(view, {start, end}),
                      start && end);
    }
    feedback.webViewAddMessageToConsole(view, {{u"message"_s, u"x"_s}});
    EXPECT_EQ(services.recorder.take().filter(u"syslog"_s), QStringList());
    QStringList offered;
    for (const char *name : {"open:", "hideWindow", "showHelp", "open", "open:and:", "hide", "exit",
                             "navigateTo:", "refresh", "show", "deleteLater", "", "OPEN:"}) {
        const Selector selector(QString::fromLatin1(name));
        if (!feedback.isSelectorExcludedFromWebScript(selector))
            offered << feedback.webScriptNameForSelector(selector);
    }
    EXPECT_EQ(offered, (QStringList{u"open"_s, u"hideWindow"_s, u"showHelp"_s}));
    EXPECT_TRUE(feedback.isKeyExcludedFromWebScript(u"objectName"_s));
}

TEST_F(Feedback, RunsItsSheetUntilItIsHidden)
{
    services.addResource(u"en.strings"_s, "SZ_CLOSE = Shut;");
    start({"StatusFixture"});
    services.defaults[u"slvCore.elog"_s] = true;
    window->show();
    slvFeedback feedback;
    const auto close = [&] { return window->findChild<mndTextField *>(u"lblClose"_s); };
    const auto pressEscape = [&] {
        close()->setFocus();
        QTest::keyClick(close(), Qt::Key_Escape);
    };
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"onCloseClicked", [&] { QTest::mouseClick(close(), Qt::LeftButton); }},
        {"onCloseClicked", pressEscape},
        {"hideWindow", [&] { feedback.hideWindow(); }},
        {"showHelp", [&] { feedback.showHelp(); }},
    };
    for (const auto &[way, act] : ways) {
        services.recorder.take();
        bool wasShown = false;
        QTimer::singleShot(0, window.get(), [&, act = act] {
            wasShown = close() && close()->text() == u"Shut"_s && !delegate->uiModalShowing();
            act();
        });
        bool hadToBeEnded = false;
        QTimer late;
        QObject::connect(&late, &QTimer::timeout, [&] {
            hadToBeEnded = true;
            ModalLoop::stopModal();
        });
        late.start(5000);
        feedback.show();
        EXPECT_FALSE(hadToBeEnded) << way;
        EXPECT_TRUE(wasShown) << way;
        EXPECT_EQ(close(), nullptr) << way;
        EXPECT_EQ(outside().size(), 1) << "the browser has the page";
        for (const QString &place :
             {u"show"_s, u"refresh"_s, u"hide"_s, QString::fromLatin1(way)}) {
            const QRegularExpression line(u" slvFeedback::%1:\\d+$"_s.arg(place));
            EXPECT_FALSE(logLines().filter(line).isEmpty()) << qPrintable(place);
        }
    }
}

TEST_F(Feedback, SpinsWhileItsPageLoadsAndClosesWhenTheProgramEnds)
{
    start();
    services.defaults[u"slvCore.elog"_s] = true;
    slvFeedback feedback;
    feedback.window()->show();
    auto *spinner = feedback.property("_spinner").value<ProgressIndicator *>();
    const auto timers = [&] {
        return QAbstractEventDispatcher::instance()->registeredTimers(spinner).size();
    };
    feedback.webViewDidStartProvisionalLoad(nullptr);
    EXPECT_TRUE(spinner->isVisible());
    EXPECT_EQ(timers(), 1);
    feedback.webViewDidFinishLoad(nullptr);
    EXPECT_FALSE(spinner->isVisible());
    const QRegularExpression trace(u" slvFeedback::webView:didFinishLoadForFrame::\\d+$"_s);
    EXPECT_EQ(logLines().filter(trace).size(), 1);
    feedback.exit();
    EXPECT_FALSE(feedback.window()->isVisible());
    EXPECT_EQ(outside(), QStringList{u"exit 0"_s});
}

#include "FeedbackTest.moc"

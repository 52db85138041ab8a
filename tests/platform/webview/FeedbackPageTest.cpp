#include "aux_windows/slvFeedback.h"
#include "platform/webview/PageFixture.h"

#include <netinet/in.h>
#include <sys/socket.h>

namespace {

/// A server that takes every connection and never answers.
class SilentServer
{
public:
    SilentServer()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *generic = reinterpret_cast<sockaddr *>(&address);
        EXPECT_EQ(::bind(m_socket, generic, size), 0);
        EXPECT_EQ(::listen(m_socket, 8), 0);
        EXPECT_EQ(::getsockname(m_socket, generic, &size), 0);
        m_port = ntohs(address.sin_port);
    }
    ~SilentServer() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(SilentServer)

    QString address() const { return u"http://127.0.0.1:%1/"_s.arg(m_port); }

private:
    const int m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
    int m_port = 0;
};

/// The feedback sheet on the screen.
struct FeedbackPage : EngineHost
{
    FeedbackPage()
    {
        addEngine();
        services.addResource(u"en.strings"_s, "SZ_ERROR_LOADING_PAGE = \"Try <b>later</b>.\";");
        start({"StatusFixture"});
        window->resize(900, 700);
        window->show();
        feedback = std::make_unique<slvFeedback>();
        view = feedback->property("_webview").value<WebView *>();
        services.defaults[u"slvCore.elog"_s] = true;
        show();
    }
    ~FeedbackPage() override { feedback.reset(); }

    void show() { delegate->_beginModalSheet(feedback->window()); }
    bool isShown() const { return view->isVisible(); }
    bool isBusy() const
    {
        return window->findChild<ProgressIndicator *>(u"_spinner"_s)->isVisible();
    }

    void loadHostilePage()
    {
        view->loadAddress(QUrl::fromLocalFile(QStringLiteral(HOSTILE_PAGE)).toString());
        ASSERT_SOON(view->findChild<QWidget *>());
        ASSERT_TRUE(becomes(u"document.title + document.readyState"_s, u"hostilecomplete"_s));
    }
    void press() const
    {
        QTest::mouseClick(view->findChild<QWidget *>()->focusProxy(), Qt::LeftButton, {}, {9, 9});
    }
    QStringList opened() { return services.recorder.take().filter(u"open url"_s); }
    /// Everything that is opened until nothing is missing.
    bool opens(QStringList wanted)
    {
        wanted.sort();
        QStringList all;
        const auto nothingIsMissing = [&] { return (all += opened()).size() >= wanted.size(); };
        const bool done = QTest::qWaitFor(nothingIsMissing, 20000);
        all.sort();
        EXPECT_EQ(all, wanted);
        return done;
    }

    std::unique_ptr<slvFeedback> feedback;
};

} // namespace

TEST_F(FeedbackPage, SeesThreeFunctionsInEveryFrameAndNothingBehindThem)
{
    ASSERT_NO_FATAL_FAILURE(loadHostilePage());
    EXPECT_EQ(ask(u"report.main.join()"_s).toString(), QString());
    EXPECT_TRUE(opens({u"open url http://from-srcdoc"_s, u"open url http://from-data"_s,
                       u"open url http://from-sandbox"_s}));
    EXPECT_TRUE(becomes(u"Object.keys(report.frames).sort().join()"_s, u"data,sandbox,srcdoc"_s));
    EXPECT_EQ(ask(u"Object.values(report.frames).join('')"_s).toString(), QString());
    EXPECT_EQ(ask(u"report.heard.join()"_s).toString(), QString())
        << "the page hears nothing of the calls";

    // With everything replaced that a function could use.
    ask(u"window.spied = []; poison(spied); slv.open('docs/page'); slv.open({toString: () => 'b'}, 2)"_s);
    EXPECT_TRUE(opens({u"open url http://docs/page"_s, u"open url http://b"_s}));
    EXPECT_EQ(ask(u"let all = ''; for (const one of spied) all += one + ';'; all"_s).toString(),
              QString());

    // Enough of its own accord: it has to wait for its user, and has nobody else's word for it.
    services.recorder.take();
    ask(u"text.click(); slv.open('too-many')"_s);
    settle();
    press();
    for (int i = 0; i < 9; ++i)
        ask(u"slv.open('%1')"_s.arg(i));
    EXPECT_TRUE(opens({u"open url http://0"_s, u"open url http://1"_s, u"open url http://2"_s,
                       u"open url http://3"_s, u"open url http://4"_s}));

    // Calls that are made up, and such that lack something.
    press();
    services.recorder.take();
    for (const char *call : {"slv.open()", "slv.exit && slv.exit()", "slv.open(Symbol.iterator)",
                             "slv.open({toString() { throw 1; }})", "slv.open('x'.repeat(100000))",
                             "window.postMessage({call: ['exit']}, '*')",
                             "dispatchEvent(new Event('slv'))", "slv.open('still-here')"}) {
        ask(QString::fromLatin1(call));
    }
    // Calls arrive in their order: what comes before the last has come to nothing.
    QStringList seen;
    EXPECT_SOON(!(seen += outside()).isEmpty());
    EXPECT_EQ(seen, QStringList{u"open url http://still-here"_s});
    EXPECT_TRUE(isShown());
}

TEST_F(FeedbackPage, HasNoWayOut)
{
    ASSERT_NO_FATAL_FAILURE(loadHostilePage());
    const QString address = ask(u"location.href"_s).toString();
    const QString ways = u"open=null openFile=null alert=undefined confirm=false prompt=null "
                         "goElsewhere= goToFile= goToScheme= click= submit= top="_s;
    for (const QString &each : ways.split(u' ')) {
        const std::string way = each.toStdString();
        EXPECT_EQ(ask(u"ways.%1()"_s.arg(each.section(u'=', 0, 0))).toString(),
                  each.section(u'=', 1))
            << way;
        settle();
        EXPECT_EQ(ask(u"location.href"_s).toString(), address) << way;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << way;
    }
    ask(u"readFiles()"_s);
    EXPECT_TRUE(becomes(u"typeof report.files"_s, u"string"_s));
    EXPECT_EQ(ask(u"report.files"_s).toString(), u"fetch refused,request refused,frame refused"_s);
    EXPECT_EQ(opened().filter(u"elsewhere"_s), QStringList());
}

TEST_F(FeedbackPage, EndsItsSheetAndIsGone)
{
    for (const char *call : {"slv.hideWindow()", "slv.showHelp()"}) {
        ASSERT_NO_FATAL_FAILURE(loadHostilePage());
        // A page may only ask to be kept after it was used.
        ask(u"window.used = 0; onclick = () => { used = 1; }; ways.stay()"_s);
        press();
        ASSERT_TRUE(becomes(u"used"_s, 1));
        EXPECT_FALSE(isBusy());
        services.recorder.take();
        feedback->refresh();
        EXPECT_EQ(opened().filter(u"inapp"_s), QStringList()) << "there is a page already";
        // What follows the first call comes from a page that nobody sees any more.
        view->runScript(QString::fromLatin1(call) + u"; slv.open('too-late'); slv.hideWindow()"_s,
                        {});
        EXPECT_SOON(!isShown());
        EXPECT_TRUE(becomes(u"document.body.innerText"_s, u"."_s)) << "in the background, too";
        EXPECT_EQ(opened().filter(u"too-late"_s), QStringList());
        feedback->refresh();
        EXPECT_EQ(opened().size(), 1) << "the next one is built anew";
        show();
    }
    EXPECT_EQ(logLines().filter(u"showPlugin::216 plugin.support"_s).size(), 1);
}

TEST_F(FeedbackPage, ThatFailsGivesWayToAText)
{
    const QString message = u"Try later."_s;
    for (const QString &address : {u"file:///no/such/page.html"_s, u"http://127.0.0.1:1/"_s,
                                   u"gopher:x"_s, u"chrome://crash"_s}) {
        view->loadHtml(u"before"_s);
        ASSERT_SOON(view->findChild<QWidget *>());
        ASSERT_TRUE(becomes(u"document.body && document.body.innerText"_s, u"before"_s));
        view->loadAddress(address);
        EXPECT_TRUE(becomes(u"document.body && document.body.innerText"_s, message))
            << qPrintable(address);
        EXPECT_SOON(!isBusy());
        services.recorder.take();
        feedback->refresh();
        EXPECT_EQ(opened().size(), 1) << qPrintable(address);
    }
    EXPECT_FALSE(logLines().filter(u"webView:didFailLoadWithError:forFrame:"_s).isEmpty());
}

TEST_F(FeedbackPage, ThatHangsCanBeClosed)
{
    const SilentServer server;
    view->loadAddress(server.address());
    EXPECT_SOON(isBusy());
    services.recorder.take();
    feedback->refresh();
    EXPECT_EQ(opened(), QStringList());
    feedback->onCloseClicked();
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(becomes(u"document.body && document.body.innerText"_s, u"."_s));
    feedback->refresh();
    EXPECT_EQ(opened().size(), 1);
    show();
    EXPECT_SOON(!isBusy());
}

#include "aux_windows/slvFeedback.h"
#include "platform/webview/PageFixture.h"

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QMimeData>

/// A host, and a web view as a plugin gets one.
struct Pages : EngineHost
{
    Pages()
    {
        start();
        made = delegate->newFactoryInstance(u"WebView"_s);
        view = qobject_cast<WebView *>(made.get());
        view->resize(300, 200);
    }

    static bool engineIsMapped() { return fileContent(u"/proc/self/maps"_s).contains("WebEngine"); }

    /// Loads a page into a view that is governed like those of spinners.
    void govern(const QString &html) const
    {
        delegate->uiFreeIndeterminateSpinner(view);
        QCoreApplication::processEvents();
        view->loadHtml(html);
        view->show();
        ASSERT_SOON(view->findChild<QWidget *>());
        ASSERT_TRUE(becomes(u"document.title + document.readyState"_s, u"tryingcomplete"_s));
    }

    std::unique_ptr<QObject> made;
};

// Runs first: what is mapped once stays mapped.
TEST_F(Pages, LoadTheEngineWhenTheFirstOneIsSeen)
{
    const QString text = u"<b>Only</b> text"_s;
    view->loadHtml(text);
    view->show();
    EXPECT_SOON(view->findChild<QLabel *>());
    EXPECT_EQ(view->findChild<QLabel *>()->text(), u"Only text"_s) << "there is no engine";
    EXPECT_EQ(services.recorder.take().filter(u"No web page can be shown"_s).size(), 1);
    view->hide();

    slvFeedback feedback;
    auto *page = feedback.property("_webview").value<WebView *>();
    page->loadAddress(u"https://feedback.solvane.example/"_s);
    feedback.window()->show();
    const auto shown = [page] { return page->findChild<QLabel *>(); };
    EXPECT_SOON(shown() && shown()->text() == u"Error loading page, please try again later."_s)
        << "an address has no text to stand for it";

    addEngine();
    view->loadHtml(u"<title>seen</title>"_s);
    QCoreApplication::processEvents();
    EXPECT_FALSE(engineIsMapped()) << "nobody looks";
    view->show();
    EXPECT_SOON(engineIsMapped());
    EXPECT_TRUE(becomes(u"document.title"_s, u"seen"_s));
}

TEST_F(Pages, OfTheSpinnerTurnAndEnd)
{
    addEngine();
    QPushButton other;
    delegate->uiCreateIndeterminateSpinner(&other);
    delegate->uiCreateIndeterminateSpinner(nullptr);
    delegate->uiFreeIndeterminateSpinner(&other);
    delegate->uiCreateIndeterminateSpinner(view);
    EXPECT_TRUE(view->html().isEmpty()) << "always queued";
    QCoreApplication::processEvents();
    EXPECT_EQ(view->html(), u"Error loading resource."_s);

    QFile::copy(QStringLiteral(SPINNER_PAGE), services.resources() + u"/ui-spinner.htm"_s);
    delegate->uiCreateIndeterminateSpinner(view);
    view->show();
    ASSERT_SOON(view->findChild<QWidget *>());
    EXPECT_TRUE(becomes(u"document.getAnimations().length"_s, 1));
    EXPECT_TRUE(ask(u"document.baseURI"_s).toString().endsWith(u"/ui-spinner.htm"_s));
    delegate->uiFreeIndeterminateSpinner(view);
    EXPECT_TRUE(becomes(u"document.body.innerText"_s, u"."_s));
    view->deleteLater();
    made.release();
    delegate->uiCreateIndeterminateSpinner(view);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

TEST_F(Pages, GetTheFeedbackObjectOfWhoeverFinishesLoading)
{
    addEngine();
    slvFeedback feedback;
    feedback.setProperty("_webview", QVariant::fromValue(view));
    feedback.webViewFinishedLoading();
    view->loadHtml(u"page"_s);
    view->show();
    ASSERT_SOON(view->findChild<QWidget *>());
    EXPECT_TRUE(becomes(u"typeof slv + typeof slv.open"_s, u"objectfunction"_s));
}

TEST_F(Pages, CannotGetRoundTheirPolicy)
{
    addEngine();
    ASSERT_NO_FATAL_FAILURE(govern(uR"html(<title>trying</title>
        <body style="height: 4000px"><p id="plain">plain <b id="word">text</b></p>
        <div id="rich" contenteditable>rich text</div><input id="field" value="field">
        <input id="address" type="email" value="a@b"><input id="number" type="number" value="12">
        <textarea id="area">area</textarea><input id="button" type="button" value="press">
        <div id="inner" style="overflow: auto; height: 20px"><p style="height: 900px">x</p></div>
        <iframe id="frame" srcdoc="<body style='height: 4000px'>"></iframe>
        <script>
            window.heard = [];
            for (const name of ['contextmenu', 'dragstart', 'drop', 'selectstart'])
                window.addEventListener(name, () => heard.push(name), true);
            const fire = (name, id) => document.getElementById(id).dispatchEvent(
                new Event(name, {bubbles: true, cancelable: true}));
            const select = (start, end) => getSelection().setBaseAndExtent(
                document.getElementById(start), 0, document.getElementById(end), 1);
        </script>)html"_s));
    const auto refused = [&](const QString &name, const QString &id) {
        return !ask(u"fire('%1', '%2')"_s.arg(name, id)).toBool();
    };
    for (const QString &name : {u"contextmenu"_s, u"dragstart"_s, u"drop"_s, u"selectstart"_s})
        EXPECT_TRUE(refused(name, name == u"drop"_s ? u"rich"_s : u"word"_s)) << qPrintable(name);
    EXPECT_EQ(ask(u"heard.join()"_s), QString()) << "the page hears of nothing";
    EXPECT_TRUE(refused(u"selectstart"_s, u"button"_s));
    for (const QString &id : {u"rich"_s, u"field"_s, u"address"_s, u"number"_s, u"area"_s})
        EXPECT_FALSE(refused(u"selectstart"_s, id)) << qPrintable(id);

    for (const QString &focused : {u"word"_s, u"field"_s}) {
        for (const QString &ends :
             {u"'plain', 'plain'"_s, u"'plain', 'rich'"_s, u"'rich', 'word'"_s}) {
            ask(u"%1.focus(); select(%2)"_s.arg(focused, ends));
            EXPECT_TRUE(becomes(u"getSelection().isCollapsed"_s, true)) << qPrintable(ends);
        }
    }
    ask(u"select('rich', 'rich')"_s);
    settle();
    EXPECT_EQ(ask(u"getSelection().toString()"_s), u"rich text"_s);
    ask(u"field.focus(); field.select()"_s);
    settle();
    EXPECT_EQ(ask(u"getSelection().toString()"_s), u"field"_s);

    ask(u"scrollTo(0, 500); inner.scrollTop = 50; frame.contentWindow.scrollTo(0, 60)"_s);
    EXPECT_TRUE(becomes(u"scrollY"_s, 0));
    settle();
    EXPECT_EQ(ask(u"[inner.scrollTop, frame.contentWindow.scrollY].join()"_s), u"50,60"_s);
    EXPECT_FALSE(refused(u"wheel"_s, u"inner"_s));
    EXPECT_EQ(ask(u"getComputedStyle(document.documentElement).overflow"_s), u"hidden"_s);

    QMimeData data;
    data.setText(u"dropped"_s);
    for (QWidget *part : view->findChildren<QWidget *>()) {
        QDragEnterEvent drag({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        drag.ignore();
        QApplication::sendEvent(part, &drag);
        EXPECT_FALSE(drag.isAccepted()) << part->metaObject()->className();
        QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5}, part->mapToGlobal(QPoint(5, 5)),
                               {});
        QApplication::sendEvent(part, &menu);
        settle();
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
}

TEST_F(Pages, ToldToTheConsoleReachTheSystemLog)
{
    addEngine();
    ASSERT_NO_FATAL_FAILURE(govern(u"<title>trying</title>"_s));
    services.recorder.take();
    ask(u"console.error('from the page'); for (let i = 0; i < 300; ++i) "
        "console.error('x'.repeat(5000))"_s);
    QStringList lines;
    ask(u"console.error('the last')"_s);
    const auto told = [&](const QString &end) {
        return QTest::qWaitFor([&] {
            lines += services.recorder.take();
            return !lines.isEmpty() && lines.last().contains(end);
        });
    };
    EXPECT_TRUE(told(u"left out"_s));
    ASSERT_NO_FATAL_FAILURE(govern(u"<title>trying</title><script>console.log('new')</script>"_s));
    EXPECT_TRUE(told(u"new"_s)) << "the next page is heard again";
    EXPECT_EQ(lines.filter(u"WebKit"_s).size(), 102);
    EXPECT_LT(lines.join(QString()).size(), 101 * 1100);
    EXPECT_TRUE(lines.value(0).startsWith(u"syslog WebKit error @ "_s)) << qPrintable(lines[0]);
    EXPECT_TRUE(lines.value(0).contains(u"from the page"_s)) << qPrintable(lines.value(0));
}

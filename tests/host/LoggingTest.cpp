#include "HostFixture.h"

#include "helpers/mndHelpers.h"
#include "helpers/sharedHelpers.h"
#include "support/FullDisk.h"

#include <fcntl.h>

namespace {

/// Helpers for which the log is always too large, or whatever a test says.
class LogHelpers : public sharedHelpers
{
    Q_OBJECT

public:
    quint64 getFileSize(const QString &) override
    {
        if (onAsked)
            onAsked();
        return size;
    }
    bool removeFileAtPath(const QString &path) override
    {
        ++removals;
        if (throws)
            throw std::runtime_error("no removal today");
        return removes && (!reallyRemoves || QFile::remove(path));
    }

    std::function<void()> onAsked;
    quint64 size = 6'144'001;
    bool removes = true, reallyRemoves = true, throws = false;
    int removals = 0;
};

struct Log : Host
{
    Log()
    {
        start();
        services.defaults[u"slvCore.elog"_s] = true;
    }

    void fill(qint64 size)
    {
        delegate->log(u"first"_s);
        ASSERT_TRUE(QFile::resize(logPath(), size));
    }
    qint64 size() const { return QFileInfo(logPath()).size(); }
};

} // namespace

TEST_F(Log, WritesOneLineInTheUsersStyle)
{
    services.defaults.remove(u"slvCore.elog"_s);
    delegate->log(u"nothing"_s);
    services.defaults[u"slvCore.elog"_s] = u"NO"_s;
    delegate->log(u"nothing"_s);
    EXPECT_FALSE(QFile::exists(logPath()));
    services.defaults[u"slvCore.elog"_s] = true;
    delegate->log(u"A message value NULL here NULL, NULLABLE"_s);
    services.locale = QLocale(QLocale::German, QLocale::Germany);
    delegate->log(u"grün"_s);
    EXPECT_EQ(logLines().join(u'|'),
              u"16/11/2026 00:45 A message value here,ABLE|16.11.26 00:45 grün"_s);
}

TEST_F(Log, TracesThePlaceWithWhatItIsAbout)
{
    delegate->showPlugin(QString());
    EXPECT_EQ(logLines().value(0), u"16/11/2026 00:45 mndAppDelegate::showPlugin::216 (null)"_s);
}

TEST_F(Log, StartsAnewAboveTheLimit)
{
    const qint64 line = QByteArray("16/11/2026 00:45 x\n").size();
    const std::tuple<qint64, qint64> rows[] = {
        {0, line}, {6'144'000, 6'144'000 + line}, {6'144'001, line}, {7'000'000, line}};
    for (const auto &[before, after] : rows) {
        fill(before);
        delegate->log(u"x"_s);
        EXPECT_EQ(size(), after) << before;
    }
}

TEST_F(Log, GivesUpMakingRoomAfterTwelveRemovals)
{
    const std::tuple<const char *, bool, bool, bool, int, int> rows[] = {
        {"the new file starts with the line", true, true, false, 1, 1},
        {"the file keeps coming back", true, false, false, 12, 2},
        {"the file cannot be removed", false, false, false, 1, 2},
        {"the helpers throw", true, true, true, 1, 1},
    };
    for (const auto &[what, removes, reallyRemoves, throws, removals, lines] : rows) {
        SCOPED_TRACE(what);
        QFile::remove(logPath());
        delegate->log(u"old"_s);
        services.recorder.take();
        LogHelpers helpers;
        std::tie(helpers.removes, helpers.reallyRemoves, helpers.throws) =
            std::tuple(removes, reallyRemoves, throws);
        delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, &helpers);
        delegate->log(u"new"_s);
        EXPECT_EQ(helpers.removals, removals);
        EXPECT_EQ(logLines().size(), lines);
        EXPECT_EQ(services.recorder.take().contains(u"syslog 16/11/2026 00:45 new\n"_s), throws);
        delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, nullptr);
    }
    fill(7'000'000);
    delegate->log(u"without helpers no file is too large"_s);
    EXPECT_GT(size(), 7'000'000);
}

TEST_F(Log, SendsWhatTheDiskRefusesToTheSystemLog)
{
    const auto expectRefusal = [this](const char *what) {
        delegate->log(u"lost?"_s);
        EXPECT_EQ(services.recorder.take(), QStringList(u"syslog 16/11/2026 00:45 lost?\n"_s))
            << what;
    };
    ASSERT_TRUE(QDir().mkpath(logPath()));
    expectRefusal("a folder in the file's place");
    ASSERT_TRUE(QDir().rmdir(logPath()));
    makePipe(logPath());
    expectRefusal("a pipe nobody reads");
    ASSERT_TRUE(QFile::remove(logPath()));
    {
        const FullDisk full(0);
        expectRefusal("a full disk");
    }
    QFile::remove(logPath());
    delegate->log(u"kept"_s);
    {
        const FullDisk full(rlim_t(size()) + 9);
        expectRefusal("room for a part of the line");
    }
    delegate->log(u"next"_s);
    EXPECT_EQ(fileContent(logPath()), "16/11/2026 00:45 kept\n        \n16/11/2026 00:45 next\n");
}

TEST_F(Log, IsSwitchedByTheMenuWhichAsksBeforeItLogs)
{
    const QString question =
        u"alert Solvane|Extended logging generates a lot of data and may reduce the performance of "
        "Solvane.  Please only enable this option if support has asked you to do so for "
        "troubleshooting purposes.|Cancel|Enable"_s;
    const std::tuple<const char *, bool, AlertPanel::Answer, bool, bool, QStringList> rows[] = {
        {"off, without a question", true, AlertPanel::Default, false, false, {u"synchronize"_s}},
        {"cancelled", false, AlertPanel::Default, false, true, {question}},
        {"on", false, AlertPanel::Alternate, true, false, {question, u"synchronize"_s}},
    };
    for (const auto &[what, before, answer, after, keepsLines, events] : rows) {
        services.defaults[u"slvCore.elog"_s] = true;
        delegate->log(u"old"_s);
        services.defaults[u"slvCore.elog"_s] = before;
        services.alertAnswer = answer;
        services.recorder.take();
        item("miExtendedLoggingEnable")->trigger();
        EXPECT_EQ(services.recorder.take(), events) << what;
        EXPECT_EQ(delegate->extendedLoggingValue(), after) << what;
        EXPECT_EQ(item("miExtendedLoggingEnable")->isChecked(), after) << what;
        EXPECT_EQ(logLines().value(0), keepsLines ? u"16/11/2026 00:45 old"_s : QString());
        EXPECT_EQ(QFile::exists(logPath()), keepsLines) << what;
    }
    delegate->applicationWillTerminate();
    EXPECT_EQ(logLines(),
              QStringList{u"16/11/2026 00:45 mndAppDelegate::applicationWillTerminate::1330"_s});

    // From elsewhere the mark follows a moment later.
    std::thread([this] { delegate->setExtendedLoggingValue(false); }).join();
    EXPECT_SOON(!item("miExtendedLoggingEnable")->isChecked());
}

TEST_F(Log, DoesNotComeBackWithALineThatIsLate)
{
    delegate->log(u"first"_s);
    LogHelpers helpers;
    helpers.size = 1;
    helpers.onAsked = [this] { item("miExtendedLoggingEnable")->trigger(); };
    delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, &helpers);
    delegate->log(u"on its way"_s);
    EXPECT_FALSE(delegate->extendedLoggingValue());
    EXPECT_FALSE(QFile::exists(logPath()));
}

TEST_F(Log, LeavesThePagesConsoleToTheSystemLog)
{
    const std::pair<QVariantMap, QString> rows[] = {
        {{{u"lineNumber"_s, 7}, {u"sourceURL"_s, u"file:///a/b.js"_s}, {u"message"_s, u"x"_s}},
         u"syslog WebKit error @ b.js:7\nx\n---"_s},
        {{{u"lineNumber"_s, 0}, {u"sourceURL"_s, u"http://h/dir/"_s}, {u"message"_s, u"y"_s}},
         u"syslog WebKit error @ dir:0\ny\n---"_s},
        {{{u"message"_s, u"z"_s}}, u"syslog WebKit message: {message = z; }"_s},
    };
    for (const auto &[message, line] : rows) {
        delegate->webViewAddMessageToConsole(nullptr, message);
        EXPECT_EQ(services.recorder.take(), QStringList{line});
    }
    EXPECT_FALSE(QFile::exists(logPath()));
}

TEST_F(Log, KeepsEveryLineOfManyThreadsWhole)
{
    constexpr int writers = 8;
    constexpr int lines = 500;
    std::atomic<int> writing = writers;
    std::vector<std::thread> threads;
    threads.reserve(writers);
    for (int writer = 0; writer < writers; ++writer) {
        threads.emplace_back([this, writer, &writing] {
            for (int i = 0; i < lines; ++i)
                delegate->log(u"%1/%2 "_s.arg(writer).arg(i) + QString(200, u'x'));
            --writing;
        });
    }
    // The helpers that every line asks for, and others, come and go meanwhile.
    sharedHelpers helpers;
    while (writing > 0) {
        QObject passing;
        delegate->sharedObjectRegister(u"passing"_s, &passing);
        delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, nullptr);
        EXPECT_EQ(delegate->sharedObject(u"SHARED.HELPERS"_s), nullptr);
        delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, &helpers);
    }
    EXPECT_EQ(delegate->sharedObject(u"passing"_s), nullptr);
    for (std::thread &thread : threads)
        thread.join();
    QStringList all = logLines();
    const QRegularExpression whole(u"^16/11/2026 00:45 \\d/\\d+ x{200}$"_s);
    EXPECT_EQ(all.filter(whole).size(), all.size());
    EXPECT_EQ(all.removeDuplicates(), 0);
    EXPECT_EQ(all.size(), writers * lines);
}

#include "LoggingTest.moc"

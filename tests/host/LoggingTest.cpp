#include "HostFixture.h"

#include "helpers/mndHelpers.h"
#include "helpers/sharedHelpers.h"
#include "host/LogFile.h"
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

/// Helpers that are busy with something else first.
class SlowHelpers : public sharedHelpers
{
    Q_OBJECT

public:
    bool removeFileAtPath(const QString &path) override
    {
        if (const auto act = std::exchange(onRemoval, nullptr))
            act();
        return sharedHelpers::removeFileAtPath(path);
    }

    std::function<void()> onRemoval;
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
        const FullDisk full{rlim_t(size())};
        expectRefusal("a full disk");
    }
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
    const QString stored = u"synchronize later"_s;
    const QRegularExpression none(u"^$"_s), old(u"^16/11/2026 00:45 old$"_s),
        first(
            u"^16/11/2026 00:45 mndAppDelegate::onExtendedLoggingEnable::\\d+ Loaded v512 .2.$"_s);
    const std::tuple<const char *, bool, AlertPanel::Answer, bool, QRegularExpression, QStringList>
        rows[] = {
            {"off, without a question", true, AlertPanel::Default, false, none, {stored}},
            {"cancelled", false, AlertPanel::Default, false, old, {question}},
            {"on", false, AlertPanel::Alternate, true, first, {question, stored}},
        };
    for (const auto &[what, before, answer, after, lines, events] : rows) {
        services.defaults[u"slvCore.elog"_s] = true;
        delegate->log(u"old"_s);
        services.defaults[u"slvCore.elog"_s] = before;
        services.alertAnswer = answer;
        services.recorder.take();
        item("miExtendedLoggingEnable")->trigger();
        EXPECT_EQ(services.recorder.take(), events) << what;
        EXPECT_EQ(delegate->extendedLoggingValue(), after) << what;
        EXPECT_EQ(item("miExtendedLoggingEnable")->isChecked(), after) << what;
        EXPECT_TRUE(lines.match(logLines().join(u'|')).hasMatch()) << what;
        EXPECT_EQ(QFile::exists(logPath()), lines != none) << what;
    }
    delegate->applicationWillTerminate();
    EXPECT_EQ(logLines().value(1),
              u"16/11/2026 00:45 mndAppDelegate::applicationWillTerminate::1330"_s);

    // From elsewhere the mark follows a moment later.
    std::thread([this] { delegate->setExtendedLoggingValue(false); }).join();
    EXPECT_SOON(!item("miExtendedLoggingEnable")->isChecked());
}

TEST_F(Log, IsRevealedOrItIsToldWhereItIs)
{
    const QString open = u"open file "_s + logPath();
    const QString none = u"alert Solvane|There is currently no logfile available to view.%1|OK|"_s;
    const QString found = none.arg(u"\n\n"_s + logPath());
    for (const auto &[isThere, starts, opens, told] :
         {std::tuple{false, false, true, none.arg(QString())},
          {true, false, true, found},
          {true, true, false, found},
          {true, true, true, QString()}}) {
        QFile::remove(logPath());
        if (isThere)
            delegate->log(u"x"_s);
        services.workspaceOpens = starts;
        services.openerFails = !opens;
        item("miExtendedLoggingSend")->trigger();
        QCoreApplication::processEvents();
        EXPECT_EQ(services.recorder.take().join(u'#'), told.isNull() ? open : open + u'#' + told);
    }
}

TEST_F(Log, LosesNoLineOfAThreadThatMeetsARemoval)
{
    fill(6'144'001);
    SlowHelpers helpers;
    std::atomic<bool> isDone = false;
    std::thread other;
    helpers.onRemoval = [&] {
        other = std::thread([&] {
            LogFile::write(logPath(), u"of the other\n"_s, &helpers);
            isDone = true;
        });
        // Either it writes to the file that goes, or it waits for the next.
        for (int i = 0; i < 100 && !isDone; ++i)
            QTest::qSleep(1);
    };
    delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, &helpers);
    delegate->log(u"mine"_s);
    other.join();
    EXPECT_EQ(logLines().size(), 2);
}

TEST_F(Log, EndsALineThatWasCutOff)
{
    const std::pair<QByteArray, QByteArray> rows[] = {{"whole\n", "whole\n"},
                                                      {"whole\ncut", "whole\ncu\n"},
                                                      {"caf\xc3\xa9", "caf \n"},
                                                      {"eur\xe2\x82", "eur \n"},
                                                      {"\xc3", "\n"}};
    for (const auto &[before, after] : rows) {
        makeFile(logPath(), before);
        delegate->log(u"x"_s);
        EXPECT_EQ(fileContent(logPath()), after + "16/11/2026 00:45 x\n");
    }
}

TEST_F(Log, DoesNotComeBackWithALineThatIsLate)
{
    delegate->log(u"first"_s);
    LogHelpers helpers;
    helpers.size = 1;
    helpers.onAsked = [this] { QFile::remove(logPath()); };
    delegate->sharedObjectRegister(u"SHARED.HELPERS"_s, &helpers);
    delegate->log(u"into the next file"_s);
    EXPECT_EQ(logLines().size(), 1);
    helpers.onAsked = [this] { item("miExtendedLoggingEnable")->trigger(); };
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

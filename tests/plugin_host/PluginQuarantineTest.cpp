#include "plugin_host/PluginQuarantine.h"
#include "plugin_host/mndPlugins.h"
#include "support/TestServices.h"

#include <sys/wait.h>

#include <csignal>
#include <string_view>

/// The processor goes on behind it.
static void trap()
{
#ifdef __x86_64__
    __asm__("int3");
#else
    std::raise(SIGTRAP);
#endif
}

struct Quarantine : testing::Test
{
    Quarantine()
    {
        services.addFixture(u"Good"_s, services.resources());
        services.addFixture(u"Hidden"_s, services.supportFolder());
    }

    /// The ids of what is loaded.
    static QStringList loaded(PluginQuarantine &quarantine)
    {
        mndPlugins plugins(nullptr);
        plugins.setQuarantine(&quarantine);
        plugins.loadAllPlugins();
        QStringList found;
        for (quint64 i = 0; i < plugins.count(); ++i)
            found << mndPlugins::info(plugins.pluginAtIndex(i)).string(u"id"_s).section(u'.', -1);
        return found;
    }

    TestServices services;
    const QString file = services.home.filePath(u"state/Solvane/crumb"_s);
};

TEST_F(Quarantine, TellsTheNextRunWhichPluginTookThisOneDown)
{
    // "+" enters, "-" leaves, "!" is an end that the program decides on, "." an orderly one.
    const std::pair<QString, QString> runs[] = {
        {u"+/a"_s, u"/a"_s},
        {u"+/a-longer-name -/a-longer-name +/é"_s, u"/é"_s},
        {u"+/a +/b -/a"_s, u"/b"_s},
        {u"+/a -/a"_s, {}},
        {u"+/a +"_s + QString(5000, u'x'), {}}, // beyond what fits
        {u"+/a ! +/b"_s, {}},
        {u"+/a ."_s, {}},
    };
    for (const auto &[steps, culprit] : runs) {
        SCOPED_TRACE(steps.left(50).toStdString());
        const pid_t child = ::fork();
        if (child == 0) {
            auto quarantine = std::make_unique<PluginQuarantine>();
            if (!quarantine->keepBreadcrumbs(file))
                ::_exit(1);
            for (const QString &step : steps.split(u' ')) {
                if (step[0] == u'+')
                    quarantine->enter(step.mid(1));
                else if (step[0] == u'-')
                    quarantine->leave(step.mid(1));
                else if (step[0] == u'!')
                    quarantine->end();
                else
                    quarantine.reset();
            }
            ::_exit(0);
        }
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        for (const bool isAgain : {false, true}) {
            PluginQuarantine next;
            ASSERT_TRUE(next.keepBreadcrumbs(file));
            EXPECT_EQ(next.culprit(), culprit) << "until the user was asked";
            EXPECT_EQ(next.crashes(), culprit.isNull() ? 0U : 1U);
            PluginQuarantine other;
            EXPECT_FALSE(other.keepBreadcrumbs(file)) << "one run at a time";
            if (isAgain)
                next.settle(true);
        }
        EXPECT_FALSE(QFile::exists(file)) << "nothing stays behind";
    }
}

TEST_F(Quarantine, CountsCrashesInARow)
{
    // "x" and "t" crash, "." ends in order, "k" is killed by others, "m" has its reason mended.
    unsigned expected = 0;
    for (const char step : std::string_view("xt.xxkt.xmx")) {
        SCOPED_TRACE(step);
        const pid_t child = ::fork();
        if (child == 0) {
            PluginQuarantine quarantine;
            if (!quarantine.keepBreadcrumbs(file) || quarantine.crashes() != expected)
                ::_exit(1);
            quarantine.settle(step == 'm');
            if (step == 'x')
                std::abort();
            if (step == 't')
                trap();
            if (step == 'k')
                ::kill(::getpid(), SIGKILL);
            quarantine.end();
            ::_exit(0);
        }
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        const bool hasCrashed = step == 'x' || step == 't';
        const int signal = step == 'x' ? SIGABRT
            : step == 't'              ? SIGTRAP
            : step == 'k'              ? SIGKILL
                                       : 0;
        ASSERT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, signal);
        ASSERT_TRUE(signal || WEXITSTATUS(status) == 0);
        expected = hasCrashed ? expected + 1 : 0;
    }
}

TEST_F(Quarantine, KeepsNoBreadcrumbsWhereThereIsNoRoom)
{
    const QString blocked = makeFile(services.home.filePath(u"blocked"_s), {});
    QFile::link(blocked, services.home.filePath(u"link"_s));
    for (const QString &path : {services.home.filePath(u"blocked/crumb"_s),
                                services.home.filePath(u"link"_s), services.home.path()}) {
        PluginQuarantine quarantine;
        EXPECT_FALSE(quarantine.keepBreadcrumbs(path)) << path.toStdString();
        EXPECT_EQ(loaded(quarantine), (QStringList{u"Good"_s, u"Hidden"_s}));
    }
}

TEST_F(Quarantine, LeavesOutWhatTheUserNames)
{
    const QStringList good{u"Good"_s};
    const QStringList hidden{u"Hidden"_s};
    const std::tuple<PluginQuarantine::Options, QStringList> cases[] = {
        {{true, {}}, good},
        {{false, {u"plugin.fixture.Good"_s}}, hidden},
        {{false, {u"Good"_s}}, hidden},
        {{false, {u"Hidden.bundle/"_s, u"nobody"_s}}, good},
        {{true, {u"Good.bundle"_s}}, {}},
        {{false, {u""_s, u"good"_s}}, good + hidden}};
    for (const auto &[options, left] : cases) {
        SCOPED_TRACE(options.leftOut.join(u' ').toStdString());
        PluginQuarantine quarantine(options);
        EXPECT_EQ(loaded(quarantine), left);
    }
}

TEST_F(Quarantine, LeavesOutUnreadUntilANewBuildComes)
{
    const QString bundle = services.supportFolder() + u"/Hidden.bundle"_s;
    const QString module = bundle + u"/Contents/MacOS/Hidden.so"_s;
    const QString bundled = services.resources() + u"/Good.bundle"_s;
    PluginQuarantine::leaveOut(services.home.filePath(u"Gone.bundle"_s), module);
    PluginQuarantine::leaveOut(bundled, bundled + u"/Contents/MacOS/Good.so"_s);
    const QStringList good{u"Good"_s};
    const QStringList both{u"Good"_s, u"Hidden"_s};
    PluginQuarantine quarantine;
    EXPECT_EQ(loaded(quarantine), both) << "what comes with the application stays";
    PluginQuarantine::leaveOut(bundle, module);
    PluginQuarantine::leaveOut(bundle, module);
    EXPECT_EQ(PluginQuarantine::leftOut(), QStringList{bundle});
    // Who reads a pipe waits for its writer.
    const QString info = bundle + u"/Contents/Info.plist"_s;
    QFile::rename(info, info + u".away"_s);
    makePipe(info);
    EXPECT_EQ(loaded(quarantine), good);
    QFile::remove(info);
    QFile::rename(info + u".away"_s, info);

    PluginQuarantine::takeBack(bundle);
    EXPECT_EQ(loaded(quarantine), both);
    PluginQuarantine::leaveOut(bundle, module);
    QFile file(module);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::fromSecsSinceEpoch(1), QFile::FileModificationTime));
    EXPECT_EQ(loaded(quarantine), both);
}

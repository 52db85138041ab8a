#include "plugin_host/PluginQuarantine.h"
#include "plugin_host/mndPlugins.h"
#include "support/TestServices.h"

#include <sys/wait.h>

namespace {

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

} // namespace

TEST_F(Quarantine, TellsTheNextRunWhichPluginTookThisOneDown)
{
    struct Case
    {
        const char *what;
        void (*run)(PluginQuarantine &);
        QString culprit;
        bool orderly = false;
    };
    const Case cases[] = {
        {"in the first", [](PluginQuarantine &q) { q.enter(u"/a.bundle"_s); }, u"/a.bundle"_s},
        {"shorter after longer",
         [](PluginQuarantine &q) {
             q.enter(u"/a long name.bundle"_s);
             q.leave(u"/a long name.bundle"_s);
             q.enter(u"/é.bundle"_s);
         },
         u"/é.bundle"_s},
        {"another began meanwhile",
         [](PluginQuarantine &q) {
             q.enter(u"/a.bundle"_s);
             q.enter(u"/b.bundle"_s);
             q.leave(u"/a.bundle"_s);
         },
         u"/b.bundle"_s},
        {"in none",
         [](PluginQuarantine &q) {
             q.enter(u"/a.bundle"_s);
             q.leave(u"/a.bundle"_s);
         },
         {}},
        {"a path beyond what fits",
         [](PluginQuarantine &q) {
             q.enter(u"/a.bundle"_s);
             q.enter(QString(5000, u'x'));
         },
         {}},
        {"an end that the program decides on",
         [](PluginQuarantine &q) {
             q.enter(u"/a.bundle"_s);
             q.end();
             q.enter(u"/b.bundle"_s);
         },
         {}},
        {"an orderly end", [](PluginQuarantine &q) { q.enter(u"/a.bundle"_s); }, {}, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        const pid_t child = ::fork();
        if (child == 0) {
            {
                PluginQuarantine quarantine;
                if (!quarantine.keepBreadcrumbs(file))
                    ::_exit(1);
                c.run(quarantine);
                if (!c.orderly)
                    ::_exit(0);
            }
            ::_exit(0);
        }
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        PluginQuarantine next;
        ASSERT_TRUE(next.keepBreadcrumbs(file));
        EXPECT_EQ(next.culprit(), c.culprit);
        PluginQuarantine other;
        EXPECT_FALSE(other.keepBreadcrumbs(file)) << "one run at a time";
    }
    {
        PluginQuarantine innocent;
        ASSERT_TRUE(innocent.keepBreadcrumbs(file));
        EXPECT_TRUE(innocent.culprit().isNull()) << "told once";
    }
    EXPECT_FALSE(QFile::exists(file)) << "nothing stays behind";
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

TEST_F(Quarantine, TriesANewBuildOfWhatWasLeftOut)
{
    const QString bundle = services.resources() + u"/Good.bundle"_s;
    const QString module = bundle + u"/Contents/MacOS/Good.so"_s;
    PluginQuarantine::leaveOut(u"/elsewhere/Hidden.bundle"_s, module);
    PluginQuarantine::leaveOut(bundle, module);
    PluginQuarantine::leaveOut(bundle, module);
    PluginQuarantine quarantine;
    EXPECT_EQ(loaded(quarantine), QStringList{u"Hidden"_s});
    EXPECT_EQ(services.defaults[u"slvCore.leftOut"_s].toStringList().size(), 2);

    QFile file(module);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::fromSecsSinceEpoch(1), QFile::FileModificationTime));
    EXPECT_EQ(loaded(quarantine), (QStringList{u"Good"_s, u"Hidden"_s}));
}

#include "platform/foundation/RealSystemServices.h"

#include "platform/foundation/RealUserDefaults.h"

#include <QElapsedTimer>

#include <pwd.h>

TEST(RealScheduler, RunsOnceAfterTheDelayAndNeverAtOnce)
{
    RealScheduler scheduler;
    QStringList ran;
    QElapsedTimer clock;
    clock.start();
    qint64 delayed = -1;
    auto gone = std::make_unique<QObject>();
    scheduler.after(0, gone.get(), [&] { ran << u"of nobody"_s; });
    scheduler.later(gone.get(), [&] { ran << u"of nobody"_s; });
    scheduler.after(0.05, nullptr, [&] { ran << u"after"_s, delayed = clock.elapsed(); });
    scheduler.after(-1, qApp, [&] { ran << u"past"_s; });
    scheduler.after(std::numeric_limits<double>::quiet_NaN(), qApp, [&] { ran << u"nan"_s; });
    scheduler.after(1e300, qApp, [&] { ran << u"never"_s; });
    scheduler.later(qApp, [&] { ran << u"later"_s; });
    gone.reset();
    EXPECT_TRUE(ran.isEmpty());
    EXPECT_SOON(delayed >= 0);
    ran.sort();
    EXPECT_EQ(ran.join(u' '), u"after later nan past"_s);
    EXPECT_GE(delayed, 50);
}

TEST(RealAccount, HomeFollowsTheEnvironmentTheActualHomeDoesNot)
{
    const RealAccount account;
    const QString actual = QString::fromLocal8Bit(::getpwuid(::getuid())->pw_dir);
    const QByteArray before = qgetenv("HOME");
    EXPECT_EQ(account.home(), QString::fromLocal8Bit(before));
    EXPECT_EQ(account.actualHome(), actual);
    EXPECT_EQ(account.loginName(), QString::fromLocal8Bit(::getpwuid(::getuid())->pw_name));
    for (const char *useless : {"", "relative"}) {
        qputenv("HOME", useless);
        EXPECT_EQ(account.home(), actual) << useless;
    }
    qputenv("HOME", before);
}

TEST(RealLanguages, PutsTheUsersSettingBeforeTheEnvironment)
{
    const QTemporaryDir folder;
    RealUserDefaults defaults(folder.filePath(u"a.conf"_s));
    const RealLanguages languages(defaults);
    const QByteArray before = qgetenv("LC_ALL");
    qputenv("LC_ALL", "de_AT.UTF-8");
    EXPECT_EQ(languages.preferred(), QStringList(u"de-AT"_s));
    defaults.setValue(u"AppleLanguages"_s, QStringList({u"fr"_s, u"de"_s}));
    EXPECT_EQ(languages.preferred(), QStringList({u"fr"_s, u"de"_s}));
    qputenv("LC_ALL", before);
}

TEST(RealProcessEnd, WritesOutTheStreamsAndSkipsExitHandlers)
{
    const auto end = [] {
        std::atexit([] { std::fputs("handler", stderr); });
        static char buffer[64];
        std::setvbuf(stderr, buffer, _IOFBF, sizeof buffer);
        std::fputs("written", stderr);
        RealProcessEnd().exit(3);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(3), "^written$");
}

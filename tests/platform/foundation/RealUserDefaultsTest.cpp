#include "platform/foundation/RealUserDefaults.h"

#include <sys/wait.h>

#include <csignal>

namespace {

struct RealUserDefaultsTest : testing::Test
{
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(u"Solvane/solvane.conf"_s);
    QByteArray content() const { return fileContent(m_path); }
};

} // namespace

TEST_F(RealUserDefaultsTest, KeepsValuesAndTheirTypesAcrossARestart)
{
    const QVariantMap values{
        {u"slvCore.elog"_s, true},
        {u"no"_s, false},
        {u"int"_s, -7},
        {u"long"_s, 9000000000LL},
        {u"double"_s, 0.1},
        {u"text"_s, u"a, b; \"c\" é\n@x"_s},
        {u"number-like"_s, u"12"_s},
        {u"tag-like"_s, u"int:12"_s},
        {u"tag-only"_s, u"bool:"_s},
        {u"empty"_s, u""_s},
        {u"bytes"_s, QByteArray("\0\xff,", 3)},
        {u"none"_s, QStringList()},
        {u"one"_s, QStringList(u"de"_s)},
        {u"AppleLanguages"_s, QStringList({u"de"_s, u"fr, x"_s})},
        {u"mixed"_s, QVariantList{1, true, u"x"_s, QVariantMap{{u"k"_s, 2.5}}}},
        {u"date"_s, QDateTime(QDate(2020, 1, 2), QTime(3, 4), Qt::UTC)},
        {u"/odd//key\\é%41/"_s, 1},
        {u"General/a b=c"_s, 2},
    };
    {
        RealUserDefaults defaults(m_path);
        for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
            defaults.setValue(entry.key(), entry.value());
        defaults.setValue(u"gone"_s, 1);
        EXPECT_TRUE(defaults.synchronize());
        defaults.removeValue(u"gone"_s);
        defaults.setValue(u"int"_s, QVariant());
        EXPECT_FALSE(defaults.value(u"int"_s).isValid());
        defaults.setValue(u"int"_s, -7);
    }
    const RealUserDefaults defaults(m_path);
    EXPECT_EQ(defaults.keys(), values.keys());
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        SCOPED_TRACE(entry.key().toStdString());
        EXPECT_EQ(defaults.value(entry.key()), entry.value());
        EXPECT_EQ(defaults.value(entry.key()).typeId(), entry.value().typeId());
    }
    EXPECT_TRUE(content().contains("slvCore.elog=bool:true\n"));
    EXPECT_EQ(RealUserDefaults::defaultFilePath(),
              qEnvironmentVariable("XDG_CONFIG_HOME") + u"/Solvane/solvane.conf"_s);
}

TEST_F(RealUserDefaultsTest, SaysWhenNothingCouldBeWrittenAndTriesAgain)
{
    const QString inTheWay = makeFile(m_folder.filePath(u"Solvane"_s), {});
    RealUserDefaults defaults(m_path);
    EXPECT_TRUE(defaults.synchronize());
    defaults.setValue(u"a"_s, 1);
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.value(u"a"_s), QVariant(1));
    QFile::remove(inTheWay);
    ASSERT_TRUE(QDir().mkpath(m_path));
    EXPECT_FALSE(defaults.synchronize());
    ASSERT_TRUE(QDir().rmdir(m_path));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(content(), "[General]\na=int:1\n");
}

TEST_F(RealUserDefaultsTest, KeepsWhatItDoesNotUnderstand)
{
    const QByteArray damaged = "[General]\na=int:1\nhand=true\nint=int:x\nwithout value\n";
    makeFile(m_path, damaged);
    RealUserDefaults defaults(m_path);
    EXPECT_EQ(defaults.value(u"a"_s), QVariant(1));
    EXPECT_TRUE(defaults.value(u"hand"_s).toBool());
    EXPECT_EQ(defaults.value(u"int"_s), QVariant(u"int:x"_s));
    defaults.setValue(u"b"_s, true);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(content().contains("a=int:1\nb=bool:true\nhand=true\nint=int:x\n"));
    EXPECT_EQ(fileContent(m_path + u".damaged"_s), damaged);
}

TEST_F(RealUserDefaultsTest, IsReadFromAnyThreadWhileItChanges)
{
    RealUserDefaults defaults(m_path);
    std::atomic<bool> done = false;
    std::atomic<int> wrong = 0;
    const auto readUntilDone = [&] {
        for (int last = 0; !done;) {
            const int now = defaults.value(u"count"_s).toInt();
            wrong += now < last || defaults.keys().size() > 1;
            last = now;
        }
    };
    std::thread first(readUntilDone), second(readUntilDone);
    for (int i = 1; i <= 3000; ++i)
        defaults.setValue(u"count"_s, i);
    done = true;
    first.join();
    second.join();
    EXPECT_EQ(wrong, 0);

    // A change from another thread is made here.
    done = false;
    std::thread writer([&] { defaults.setValue(u"other"_s, 1), done = defaults.synchronize(); });
    EXPECT_SOON(done.load());
    writer.join();
    EXPECT_EQ(defaults.value(u"other"_s), QVariant(1));
}

TEST_F(RealUserDefaultsTest, LosesNothingWhenItsProcessIsKilledWhileWriting)
{
    constexpr int rounds = 100;
    const QString filler(20000, u'x');
    int stored = 0;
    for (int round = 0; round < rounds; ++round) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            RealUserDefaults defaults(m_path);
            for (int count = defaults.value(u"count"_s).toInt() + 1;; ++count) {
                defaults.setValue(u"count"_s, count);
                defaults.setValue(u"filler%1"_s.arg(count % 5), filler);
                if (!defaults.synchronize() || ::write(ends[1], &count, sizeof count) < 0)
                    ::_exit(1);
            }
        }
        ::close(ends[1]);
        int told = 0;
        for (int i = 0; i <= round % 4; ++i)
            ASSERT_EQ(::read(ends[0], &told, sizeof told), ssize_t(sizeof told));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        for (int later = 0; ::read(ends[0], &later, sizeof later) > 0;)
            told = later;
        ::close(ends[0]);
        const RealUserDefaults defaults(m_path);
        stored = defaults.value(u"count"_s).toInt();
        ASSERT_TRUE(stored == told || stored == told + 1) << stored << " is not " << told;
        ASSERT_EQ(defaults.value(u"filler%1"_s.arg(told % 5)), filler);
    }
    EXPECT_GE(stored, rounds);
    EXPECT_FALSE(QFile::exists(m_path + u".damaged"_s));
}

#include "platform/foundation/RealUserDefaults.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/SettingsValue.h"
#include "tests/faults/FailingCalls.h"
#include "tests/support/FullDisk.h"

#include <QSettings>

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/wait.h>

#include <csignal>

namespace {

struct LastMessage : SystemLog
{
    void write(const QString &message) override
    {
        text = message;
        isOfMainThread = QThread::currentThread() == qApp->thread();
    }
    QString text;
    bool isOfMainThread = false;
};

struct RealUserDefaultsTest : testing::Test
{
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(u"Solvane/solvane.conf"_s);
    const QByteArray m_parent = QFile::encodeName(m_folder.filePath(u"Solvane"_s));
    LastMessage m_log;

    QByteArray content() const { return fileContent(m_path); }
    /// All that lies in the settings' folder.
    QString names() const
    {
        return QDir(m_folder.filePath(u"Solvane"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            .join(u' ');
    }
};

/// Another process that makes so many changes of one key, and another at the end.
pid_t startWriter(const QString &path, const QString &key, int changes)
{
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    RealUserDefaults defaults(path);
    for (int i = 1; i <= changes; ++i) {
        defaults.setValue(key, i);
        defaults.synchronize();
    }
    defaults.setValue(key + u"done"_s, true);
    while (!defaults.synchronize())
        continue;
    ::_exit(0);
}

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
        {u"marked"_s, u"\ufeffa"_s},
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
        for (const QString &key : values.keys())
            defaults.setValue(key, values[key]);
        defaults.setValue(u"gone"_s, 1);
        EXPECT_TRUE(defaults.synchronize());
        defaults.removeValue(u"gone"_s);
        defaults.setValue(u"int"_s, QVariant());
        EXPECT_FALSE(defaults.value(u"int"_s).isValid());
        defaults.setValue(u"int"_s, -7);
    }
    const RealUserDefaults defaults(m_path);
    EXPECT_EQ(defaults.keys(), values.keys());
    for (const QString &key : values.keys()) {
        EXPECT_EQ(defaults.value(key), values[key]) << key.toStdString();
        EXPECT_EQ(defaults.value(key).typeId(), values[key].typeId()) << key.toStdString();
    }
    EXPECT_TRUE(content().contains("slvCore.elog=bool:true\n"));
    EXPECT_EQ(RealUserDefaults::defaultFilePath(),
              qEnvironmentVariable("XDG_CONFIG_HOME") + u"/Solvane/solvane.conf"_s);
}

TEST_F(RealUserDefaultsTest, SaysWhenNothingCouldBeWrittenAndTriesAgain)
{
    const QString inTheWay = makeFile(m_folder.filePath(u"Solvane"_s), {});
    RealUserDefaults defaults(m_path, &m_log);
    EXPECT_TRUE(defaults.synchronize());
    defaults.setValue(u"a"_s, 1);
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.value(u"a"_s), QVariant(1));
    const QString told = u"The settings could not be written to %1: "_s.arg(m_path);
    EXPECT_EQ(m_log.text, told + u"its folder cannot be made"_s);
    QFile::remove(inTheWay);

    const QByteArray path = QFile::encodeName(m_path);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"Solvane"_s));
    for (int (*make)(const char *, mode_t) : {&::mkdir, &::mkfifo}) {
        ASSERT_EQ(make(path.constData(), 0700), 0);
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(m_log.text, told + u"it is no file"_s);
        EXPECT_EQ(names(), u"solvane.conf"_s);
        const RealUserDefaults reader(m_path, &m_log);
        EXPECT_EQ(m_log.text, u"The settings in %1 could not be read: it is no file"_s.arg(m_path));
        ASSERT_EQ(std::remove(path.constData()), 0);
    }

    {
        const FileDescriptor folder(::open(m_parent.constData(), O_RDONLY | O_DIRECTORY));
        ASSERT_EQ(::flock(folder.number(), LOCK_EX), 0);
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(m_log.text, told + u"another process does not end writing"_s);
    }
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(content(), "[General]\na=int:1\n");
    EXPECT_EQ(names(), u"solvane.conf"_s);
}

TEST_F(RealUserDefaultsTest, KeepsTheOldFileWhenTheDiskIsFull)
{
    for (const char *more : {"", "no value\n"}) {
        const QByteArray before = QByteArray("[General]\na=int:1\n") + more;
        SCOPED_TRACE(more);
        makeFile(m_path, before);
        RealUserDefaults defaults(m_path, &m_log);
        defaults.setValue(u"b"_s, QString(100, u'x'));
        {
            const FullDisk full(static_cast<rlim_t>(before.size()));
            EXPECT_FALSE(defaults.synchronize());
        }
        EXPECT_EQ(content(), before);
        EXPECT_FALSE(m_log.text.isEmpty());
        EXPECT_TRUE(defaults.synchronize());
        EXPECT_TRUE(content().contains("a=int:1\nb=xxx"));
    }
}

TEST_F(RealUserDefaultsTest, KeepsTheOldFileOrHasTheNewOneWhicheverCallFails)
{
    QByteArray before = "[General]\n";
    for (int i = 100; i < 350; ++i)
        before += "key" + QByteArray::number(i) + "=int:12345678\n";
    const QByteArray after = before + "new=int:1\n";
    for (const int number : {ENOSPC, EIO}) {
        int failures = 0;
        for (int first = 1, met = 0; met >= first - 1; ++first) {
            SCOPED_TRACE(testing::Message() << number << ' ' << first);
            makeFile(m_path, before);
            RealUserDefaults defaults(m_path);
            defaults.setValue(u"new"_s, 1);
            bool written = false, isFlush = false;
            {
                const FailingCalls calls(number, m_parent.toStdString(),
                                         [&](int count, const std::string &call) {
                                             met = count;
                                             isFlush = call == "sync " + m_parent.toStdString();
                                             return count >= first;
                                         });
                written = defaults.synchronize();
            }
            EXPECT_EQ(content(), written || isFlush ? after : before);
            EXPECT_EQ(names(), u"solvane.conf"_s);
            EXPECT_TRUE(defaults.synchronize());
            EXPECT_EQ(content(), after);
            failures += !written;
        }
        EXPECT_GT(failures, 3);
    }
}

TEST_F(RealUserDefaultsTest, KeepsEveryKeyWhateverRoomThereIs)
{
    constexpr int noRight = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        if (::unshare(CLONE_NEWNS) != 0
            || ::mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || !QDir(m_folder.path()).mkdir(u"Solvane"_s)
            || ::mount("tmpfs", m_parent.constData(), "tmpfs", 0, "size=64k") != 0)
            ::_exit(noRight);
        for (int room = 0; room < 12; ++room) {
            QFile::remove(m_folder.filePath(u"Solvane/filler"_s));
            QFile::remove(m_path);
            RealUserDefaults defaults(m_path);
            for (int i = 0; i < 250; ++i)
                defaults.setValue(u"slvCore.key%1"_s.arg(i), u"a value of this length"_s);
            const bool isFirstWritten = defaults.synchronize();
            QFile filler(m_folder.filePath(u"Solvane/filler"_s));
            if (!isFirstWritten || !filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
                ::_exit(1);
            while (filler.write(QByteArray(4096, 'x')) > 0)
                continue;
            filler.resize(std::max<qint64>(0, filler.size() - room * 4096));
            const QByteArray before = content();
            defaults.setValue(u"slvCore.key7"_s, u"a value of this Length"_s);
            const bool isWritten = defaults.synchronize();
            if ((content() != before) != isWritten || content().size() != before.size()
                || isWritten != (room >= 3))
                ::_exit(2 + room);
        }
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WEXITSTATUS(status) == noRight)
        GTEST_SKIP() << "this user may not mount";
    EXPECT_EQ(status, 0) << WEXITSTATUS(status);
}

TEST_F(RealUserDefaultsTest, WaitsForNoDiskUnlessAsked)
{
    RealUserDefaults defaults(m_path, &m_log);
    QStringList answers;
    const auto answer = [&](bool written) { answers << (written ? u"yes"_s : u"no"_s); };
    defaults.synchronizeLater(answer);
    EXPECT_SOON(answers.size() == 1) << "nothing to do";
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"Solvane"_s));
    {
        const FileDescriptor folder(::open(m_parent.constData(), O_RDONLY | O_DIRECTORY));
        ASSERT_EQ(::flock(folder.number(), LOCK_EX), 0);
        for (int i = 0; i < 3; ++i) {
            defaults.setValue(u"a"_s, i);
            defaults.synchronizeLater(answer);
            EXPECT_EQ(defaults.value(u"a"_s), QVariant(i));
        }
        EXPECT_EQ(answers.size(), 1) << "not at once";
        EXPECT_FALSE(QFile::exists(m_path));
        EXPECT_SOON(answers.size() > 1);
    }
    EXPECT_SOON(answers.size() == 4);
    EXPECT_EQ(answers.value(1), u"no"_s) << "another process has the folder";
    EXPECT_FALSE(m_log.isOfMainThread) << "it is not the one that waits";
    onThread([&] { defaults.synchronizeLater(answer); });
    EXPECT_SOON(answers.size() == 5);
    EXPECT_EQ(answers.last(), u"yes"_s);
    EXPECT_EQ(content(), "[General]\na=int:2\n");
}

TEST_F(RealUserDefaultsTest, RemovesWhatIsInGroupsAndWhatOthersHaveWritten)
{
    const QByteArray foreign = "[General]\na=int:1\n[group]\nkey=two\nother=int:3\n";
    makeFile(m_path, foreign);
    RealUserDefaults defaults(m_path);
    EXPECT_EQ(defaults.keys().join(u' '), u"a group/key group/other"_s);
    defaults.setValue(u"group/key"_s, 2);
    defaults.removeValue(u"group/other"_s);
    EXPECT_TRUE(defaults.synchronize());
    const RealUserDefaults reader(m_path);
    EXPECT_EQ(reader.keys().join(u' '), u"a group/key"_s);
    EXPECT_EQ(reader.value(u"group/key"_s), QVariant(2));

    makeFile(m_path, foreign + "late=int:4\n");
    defaults.setValue(u"b"_s, 1);
    defaults.removeAll();
    EXPECT_TRUE(defaults.keys().isEmpty());
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(content(), "");
    defaults.setValue(u"c"_s, 1);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(content(), "[General]\nc=int:1\n");
}

TEST_F(RealUserDefaultsTest, ReadsAndWritesWhatQtsOwnSettingsDo)
{
    const QByteArray texts[] = {
        "a=1\nb = two words \n; c=3\n\n d=\"quoted; , = \" ; comment\ne=a\\x41z\\101\\n\\\"\n",
        "[General]\r\na=@@x\r\nb=@ByteArray(\\x1\xc3\xbf)\r\n[%General]\r\nk=v\r\n",
        "\xef\xbb\xbf[ g ]\na%20b=x,y , \" z\"\nempty=\nquotes=\"\"\nlong=first \\\n  second\n",
        "[g]\nc=\"two\nlines\"\n[General]\nn=\xe2\x82\xac\\x20ac\\xe9,\n",
        "a=1\n[general\nno value\n",
    };
    for (const QByteArray &text : texts) {
        SCOPED_TRACE(text.toStdString());
        const QString path = makeFile(m_folder.filePath(QString::number(qHash(text))), text);
        const QSettings qts(path, QSettings::IniFormat);
        const SettingsText::Parsed parsed = SettingsText::parse(text);
        QStringList keys = qts.allKeys();
        keys.sort();
        EXPECT_EQ(parsed.entries.keys(), keys);
        // Qt's own take a mark of the byte order before a heading for damage, but read what
        // follows.
        EXPECT_EQ(parsed.isWhole,
                  qts.status() == QSettings::NoError || text.startsWith("\xef\xbb\xbf"));
        for (const QString &key : keys)
            EXPECT_EQ(SettingsValue::decoded(parsed.entries[key]), qts.value(key))
                << qPrintable(key);
    }
    RealUserDefaults defaults(m_path);
    const QStringList values{u"a;b,c=d"_s,
                             u" x "_s,
                             u"@x"_s,
                             u"\x1"
                             "f\\\"\n\t"_s,
                             u"ä€\U0001f600"_s,
                             u""_s,
                             u"\x7f"
                             "0"_s};
    for (const QString &value : values)
        defaults.setValue(u"é/%1"_s.arg(values.indexOf(value)), value);
    EXPECT_TRUE(defaults.synchronize());
    const QSettings qts(m_path, QSettings::IniFormat);
    for (const QString &value : values)
        EXPECT_EQ(qts.value(u"%C3%A9%2F%1"_s.arg(values.indexOf(value))), QVariant(value));
    const QByteArray cutOff = "a=\"open\nb=1";
    EXPECT_EQ(SettingsText::text(SettingsText::parse(cutOff).entries),
              "[General]\na=\"open\\xa\\x62=1\"\n");
}

TEST_F(RealUserDefaultsTest, TellsWhyAFolderThatIsReadOnlyTakesNothing)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root writes everywhere";
    makeFile(m_path, "[General]\na=int:1\n");
    RealUserDefaults defaults(m_path, &m_log);
    defaults.setValue(u"a"_s, 2);
    ASSERT_EQ(::chmod(m_parent.constData(), 0500), 0);
    EXPECT_FALSE(defaults.synchronize());
    ASSERT_EQ(::chmod(m_parent.constData(), 0700), 0);
    EXPECT_TRUE(m_log.text.endsWith(u"Permission denied"_s)) << m_log.text.toStdString();
    EXPECT_EQ(content(), "[General]\na=int:1\n");
}

TEST_F(RealUserDefaultsTest, LeavesALinkAndItsPermissionsAlone)
{
    const QString real = makeFile(m_folder.filePath(u"elsewhere/real"_s), "[General]\na=int:1\n");
    ASSERT_TRUE(QFile::setPermissions(real, QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"Solvane"_s));
    ASSERT_TRUE(QFile::link(real, m_path));
    RealUserDefaults defaults(m_path);
    defaults.setValue(u"b"_s, 2);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(QFileInfo(m_path).isSymLink());
    EXPECT_EQ(fileContent(real), "[General]\na=int:1\nb=int:2\n");
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(real).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(RealUserDefaultsTest, LeavesLinksWithoutAFileAlone)
{
    makeFile(m_folder.filePath(u"elsewhere/file"_s), {});
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"Solvane"_s));
    // What is behind the last two may have all the settings, and only be out of reach for now.
    const std::pair<const char *, bool> links[] = {{"../elsewhere/new", true},
                                                   {"../nowhere/new", false},
                                                   {"solvane.conf", false},
                                                   {"../elsewhere/file/new", false}};
    for (const auto &[target, leadsToAFolder] : links) {
        ASSERT_EQ(::symlink(target, QFile::encodeName(m_path).constData()), 0);
        {
            RealUserDefaults defaults(m_path);
            defaults.setValue(u"a"_s, 1);
            EXPECT_EQ(defaults.synchronize(), leadsToAFolder) << target;
        }
        EXPECT_EQ(content(), leadsToAFolder ? "[General]\na=int:1\n" : "") << target;
        EXPECT_TRUE(QFileInfo(m_path).isSymLink()) << target;
        QFile::remove(m_path);
    }
}

TEST_F(RealUserDefaultsTest, WaitsForNoLockFileThatAnotherProcessHasLeft)
{
    const QByteArray host = QSysInfo::machineHostName().toUtf8();
    const QByteArray self = QByteArray::number(::getpid()) + "\ntest_foundation\n";
    const QByteArray none = "", cutOff = "12", ofTheGone = "4194304\nsolvane\n" + host + '\n',
                     running = self + host + '\n', elsewhere = "1\nsolvane\nelsewhere\n\n\n";
    RealUserDefaults defaults(m_path);
    int count = 0;
    for (const QByteArray &lock : {none, cutOff, ofTheGone, running, elsewhere}) {
        SCOPED_TRACE(lock.toStdString());
        makeFile(m_path + u".lock"_s, lock);
        defaults.setValue(u"count"_s, ++count);
        EXPECT_TRUE(defaults.synchronize());
        // Whoever waits for such a file does so until it is old enough, and takes it away.
        EXPECT_EQ(fileContent(m_path + u".lock"_s), lock);
        EXPECT_EQ(content(), "[General]\ncount=int:" + QByteArray::number(count) + '\n');
        EXPECT_EQ(names(), u"solvane.conf solvane.conf.lock"_s);
    }
    QFile::remove(m_path + u".lock"_s);
    // For this one, for ever.
    ASSERT_TRUE(QDir().mkpath(m_path + u".lock"_s));
    defaults.setValue(u"last"_s, true);
    EXPECT_TRUE(defaults.synchronize());
}

TEST_F(RealUserDefaultsTest, KeepsWhatSeveralProcessesWriteAtATime)
{
    constexpr int changes = 100;
    const QString keys[] = {u"a"_s, u"b"_s, u"c"_s};
    for (const QString &key : keys)
        ASSERT_GT(startWriter(m_path, key, changes), 0);
    for (int status = 0; ::waitpid(-1, &status, 0) > 0;)
        EXPECT_EQ(status, 0);
    const RealUserDefaults defaults(m_path);
    for (const QString &key : keys) {
        EXPECT_EQ(defaults.value(key), QVariant(changes)) << key.toStdString();
        EXPECT_TRUE(defaults.value(key + u"done"_s).toBool()) << key.toStdString();
    }
    EXPECT_EQ(names(), u"solvane.conf"_s);
}

TEST_F(RealUserDefaultsTest, KeepsWhatItDoesNotUnderstand)
{
    const QByteArray damaged = "[General]\na=int:1\nhand=true\nint=int:x\nwithout value\n";
    makeFile(m_path, damaged);
    makeFile(m_path + u".damaged"_s, "of another time");
    RealUserDefaults defaults(m_path);
    EXPECT_EQ(defaults.value(u"a"_s), QVariant(1));
    EXPECT_TRUE(defaults.value(u"hand"_s).toBool());
    EXPECT_EQ(defaults.value(u"int"_s), QVariant(u"int:x"_s));
    defaults.setValue(u"b"_s, true);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(content().contains("a=int:1\nb=bool:true\nhand=true\nint=int:x\n"));
    EXPECT_EQ(fileContent(m_path + u".damaged"_s), "of another time");
    EXPECT_EQ(fileContent(m_path + u".damaged-2"_s), damaged);
    EXPECT_FALSE(QFile::permissions(m_path + u".damaged-2"_s)
                 & (QFile::ReadGroup | QFile::ReadOther));
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
    onThread([&] {
        defaults.setValue(u"other"_s, 1);
        EXPECT_TRUE(defaults.synchronize());
    });
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
                defaults.synchronizeLater({});
                defaults.setValue(u"after"_s, count);
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
        const int after = defaults.value(u"after"_s).toInt();
        ASSERT_TRUE(after == stored || after == stored - 1) << "in their order";
        ASSERT_TRUE(stored == told || stored == told + 1) << stored << " is not " << told;
        ASSERT_EQ(defaults.value(u"filler%1"_s.arg(told % 5)), filler);
    }
    EXPECT_GE(stored, rounds);
    RealUserDefaults last(m_path);
    last.setValue(u"count"_s, 0);
    EXPECT_TRUE(last.synchronize());
    EXPECT_EQ(names(), u"solvane.conf"_s);
}

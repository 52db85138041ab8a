#include "platform/foundation/FileReplacement.h"

#include "tests/faults/FailingCalls.h"

#include <sys/wait.h>

#include <cerrno>

namespace {

struct FileReplacement : testing::Test
{
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(u"a"_s);
    const QByteArray m_old = QByteArray(10000, 'o');
    const QByteArray m_new = QByteArray(20000, 'n');

    std::string folder() const { return m_folder.path().toStdString(); }
    QString names() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            .join(u' ');
    }
};

struct Fault
{
    const char *name;
    bool isNamedFromTheStart; ///< there are no files without names
    bool isForGood;

    bool isMeant(int count, const std::string &call, int first) const
    {
        return (isNamedFromTheStart && call.ends_with("/.")) || count == first
            || (isForGood && count > first);
    }
};

constexpr Fault faults[] = {
    {"one call", false, false},
    {"all from one on", false, true},
    {"one call, with a name", true, false},
    {"all from one on, with a name", true, true},
};

} // namespace

TEST_F(FileReplacement, LeavesTheOldFileOrTheNewOneWhicheverCallFails)
{
    for (const Fault &fault : faults) {
        for (const int number : {ENOSPC, EIO, EACCES}) {
            int failures = 0, flushes = 0;
            for (int first = 1, met = 0; met >= first - 1; ++first) {
                SCOPED_TRACE(testing::Message() << fault.name << ' ' << number << ' ' << first);
                makeFile(m_path, m_old);
                met = 0;
                std::string last;
                const FailingCalls calls(number, folder(), [&](int count, const std::string &call) {
                    met = count;
                    last = call;
                    return fault.isMeant(count, call, first);
                });
                const std::error_code error = replaceFile(m_path, m_new);
                const bool isFlush = error && fileContent(m_path) == m_new;
                EXPECT_EQ(fileContent(m_path), error && !isFlush ? m_old : m_new);
                EXPECT_TRUE(!isFlush || last.starts_with("sync "));
                EXPECT_TRUE(!error || error.value() == number);
                EXPECT_EQ(names(), u"a"_s);
                flushes += isFlush;
                failures += bool(error);
            }
            EXPECT_EQ(flushes, 1) << fault.name;
            EXPECT_GE(failures, 3) << fault.name;
        }
    }
}

TEST_F(FileReplacement, LeavesTheOldFileOrTheNewOneWhereverItsProcessDies)
{
    for (const Fault &fault : faults) {
        int status = -1;
        for (int last = 1; status != 0; ++last) {
            SCOPED_TRACE(testing::Message() << fault.name << ' ' << last);
            makeFile(m_path, m_old);
            const pid_t child = ::fork();
            if (child == 0) {
                const FailingCalls calls(EIO, folder(), [&](int count, const std::string &call) {
                    if (count == last)
                        ::_exit(1);
                    return fault.isMeant(count, call, 1000);
                });
                ::_exit(replaceFile(m_path, m_new) ? 2 : 0);
            }
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            ASSERT_TRUE(fileContent(m_path) == m_old || fileContent(m_path) == m_new);
            EXPECT_FALSE(replaceFile(m_path, "another"));
            EXPECT_EQ(fileContent(m_path), "another");
            EXPECT_EQ(names(), u"a"_s);
        }
    }
}

TEST_F(FileReplacement, TakesThePlaceOfALinkButNotOfAFolder)
{
    const QString target = makeFile(m_folder.filePath(u"target"_s), "t");
    ASSERT_TRUE(QFile::link(target, m_path) && QFile::link(m_folder.path(), target + u"-folder"_s));
    struct stat status = {};
    EXPECT_FALSE(replaceFile(m_path, "", 0640));
    ASSERT_EQ(::lstat(QFile::encodeName(m_path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode, mode_t(S_IFREG | 0640));
    EXPECT_EQ(fileContent(target), "t");
    EXPECT_FALSE(replaceFile(target + u"-folder"_s, "f"));
    EXPECT_EQ(fileContent(target + u"-folder"_s), "f");
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"folder"_s));
    for (const QString &none : {u"folder"_s, u"a/"_s, u"missing/a"_s, u"target/a"_s, u".."_s})
        EXPECT_TRUE(replaceFile(m_folder.filePath(none), "x")) << qPrintable(none);
    EXPECT_TRUE(replaceFile(QString(), "x"));
    EXPECT_EQ(names(), u"a folder target target-folder"_s);
}

TEST_F(FileReplacement, IsWholeWhenManyThreadsReplaceTheSameFile)
{
    for (const bool isNamedFromTheStart : {false, true}) {
        const FailingCalls calls(EOPNOTSUPP, folder(), [&](int, const std::string &call) {
            return isNamedFromTheStart && call.ends_with("/.");
        });
        std::vector<std::thread> threads;
        std::atomic<int> failures = 0;
        for (char letter = 'a'; letter < 'm'; ++letter) {
            threads.emplace_back([&, letter] {
                for (int i = 0; i < 30; ++i) {
                    failures += bool(replaceFile(m_path, QByteArray(5000, letter)));
                    const QByteArray found = fileContent(m_path);
                    failures += found != QByteArray(5000, found.isEmpty() ? ' ' : found[0]);
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        EXPECT_EQ(failures, 0);
        EXPECT_EQ(names(), u"a"_s);
    }
}

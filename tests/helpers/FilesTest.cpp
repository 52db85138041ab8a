#include "helpers/fileEnum.h"
#include "helpers/sharedHelpers.h"
#include "platform/foundation/FilePath.h"
#include "platform/foundation/RealFileSystem.h"
#include "support/TestServices.h"
#include "tests/platform/foundation/LinkRace.h"

#include <ctime>

namespace {

/// Takes records by any of the ways a delegate may declare.
class ByRecord : public QObject
{
    Q_OBJECT
public:
    FileRecords *list = nullptr;
    size_t calls = 0;
    bool listFirst = true;
    bool throws = false;
    Q_INVOKABLE void onFileFound(const FileRecord &record)
    {
        ++calls;
        listFirst &= !list || (!list->empty() && list->back() == record);
        if (throws)
            throw std::runtime_error("enough");
    }
};

class ByVariant : public QObject
{
    Q_OBJECT
public:
    QStringList paths;
    Q_INVOKABLE void onFileFound(const QVariant &record)
    {
        paths << record.value<FileRecord>().path;
    }
};

/// The real one, telling what is done and failing at a given step.
class WatchedFiles : public RealFileSystem
{
public:
    QStringList steps;
    QString failing;     ///< the step that fails, or at its n-th time: "write 2"
    bool isFast = false; ///< waits for no disk
    QStringList takeSteps() { return std::exchange(steps, {}); }

    bool passes(const QString &step)
    {
        steps << step;
        return step != failing && u"%1 %2"_s.arg(step).arg(steps.count(step)) != failing;
    }
    bool remove(const QString &path) override
    {
        return passes(u"remove"_s) && RealFileSystem::remove(path);
    }
    std::unique_ptr<FileWriter> createForWriting(const QString &path,
                                                 QByteArrayView content) override
    {
        auto real = passes(u"create %1"_s.arg(content.size()))
            ? RealFileSystem::createForWriting(path, content)
            : nullptr;
        return real ? std::make_unique<Writer>(*this, path, std::move(real)) : nullptr;
    }

private:
    struct Writer : FileWriter
    {
        Writer(WatchedFiles &watched, const QString &name, std::unique_ptr<FileWriter> writer)
            : files(watched)
            , path(name)
            , real(std::move(writer))
        { }
        bool write(QByteArrayView bytes) override
        {
            const bool passed = files.passes(u"write"_s) && real->write(bytes);
            fill = bytes[0] & 0xff;
            return passed && bytes.count(bytes[0]) == bytes.size();
        }
        bool synchronize() override
        {
            if (files.isFast)
                return true;
            const auto size = files.attributes(path)->size.value_or(-1);
            return files.passes(u"flush %1 of %2"_s.arg(size).arg(fill)) && real->synchronize();
        }
        bool close() override { return files.passes(u"close"_s) && real->close(); }

        WatchedFiles &files;
        QString path;
        std::unique_ptr<FileWriter> real;
        int fill = 0;
    };
};

} // namespace

struct Files : testing::Test
{
    Files() { systemServices().fileSystem = &files; }
    QString add(const QString &name, qint64 size)
    {
        return TestServices::write(services.home.filePath(name), QByteArray(size, 'x'));
    }

    TestServices services;
    WatchedFiles files;
    sharedHelpers helpers;
};

TEST_F(Files, ReachTheListFirstThenTheDelegate)
{
    const QString path = add(u"a"_s, 5);
    const QString folder = services.home.path();
    FileRecords records;
    ByRecord delegate;
    delegate.list = &records;
    helpers.enumerateFilesAtPathEx(folder, &records, &delegate);
    EXPECT_EQ(records, (FileRecords{{path, 5}}));
    EXPECT_TRUE(delegate.calls == 1 && delegate.listFirst);

    helpers.enumerateFilesAtPath(folder, &records); // appends
    EXPECT_EQ(records.size(), 2u);
    ByVariant byVariant;
    QObject deaf;
    helpers.enumerateFilesAtPathEx(folder, nullptr, &byVariant);
    helpers.enumerateFilesAtPathEx(folder, nullptr, &deaf);
    helpers.enumerateFilesAtPathEx(folder, nullptr, nullptr);
    EXPECT_EQ(byVariant.paths, QStringList{path});

    add(u"b"_s, 1);
    delegate.list = nullptr;
    delegate.throws = true;
    services.recorder.take();
    fileEnum().enumAtPathEx(folder, nullptr, &delegate);
    EXPECT_EQ(delegate.calls, 3u);
    EXPECT_EQ(services.recorder.take(),
              QStringList{u"syslog onFileFound: threw an exception: enough"_s});
}

TEST_F(Files, AreShreddedBlockByBlock)
{
    const auto flushes = [](int blocks, int fill) {
        QStringList steps;
        for (int block = 1; block <= blocks; ++block)
            steps << u"write"_s << u"flush %1 of %2"_s.arg(block * 16384).arg(fill);
        return steps;
    };
    const QStringList begin{u"remove"_s, u"create 16384"_s};
    for (const auto &[size, blocks] :
         {std::pair{0, 1}, {16383, 1}, {16384, 2}, {32767, 2}, {40000, 3}}) {
        const QString path = add(u"f"_s, size);
        EXPECT_TRUE(helpers.secureRemoveFileAtPath(path));
        EXPECT_EQ(files.takeSteps(),
                  begin + flushes(blocks, 0) + QStringList({u"close"_s, u"remove"_s}))
            << size;
        EXPECT_FALSE(QFile::exists(path));
    }
    for (const char *failing :
         {"remove 1", "create 16384", "write 2", "flush 32768 of 0", "close"}) {
        const QString path = add(u"f"_s, 20000);
        files.failing = QString::fromLatin1(failing);
        EXPECT_FALSE(helpers.shredFile(path, false)) << failing;
        EXPECT_EQ(files.takeSteps().last(), u"remove"_s) << failing;
        EXPECT_FALSE(QFile::exists(path)) << failing;
    }
    files.failing = u"create 16384 3"_s;
    EXPECT_FALSE(helpers.shredFile(add(u"f"_s, 1), true));
    EXPECT_EQ(files.takeSteps().count(u"close"_s), 2);
    files.failing.clear();
    const std::time_t begun = std::time(nullptr);
    EXPECT_TRUE(helpers.shredFile(add(u"f"_s, 1), true));
    const auto sevenPasses = [&](std::time_t seed) {
        std::srand(unsigned(seed));
        QStringList steps;
        for (int pass = 1; pass <= 7; ++pass) // each finds a file one block larger
            steps += begin + flushes(pass, std::rand() & 255) + QStringList(u"close"_s);
        return steps << u"remove"_s;
    };
    const QStringList steps = files.takeSteps();
    EXPECT_TRUE(steps == sevenPasses(begun) || steps == sevenPasses(begun + 1))
        << qPrintable(steps.join(u'|'));
    // A pass alone leaves the new file, full of the value's low byte.
    const QString filled = add(u"f"_s, 40000);
    EXPECT_TRUE(helpers._shredFile(filled, 0x141));
    EXPECT_TRUE(fileContent(filled) == QByteArray(49152, '\x41'));
    for (const QString &none : {u"/missing/file"_s, u""_s, QString()}) {
        EXPECT_FALSE(helpers.secureRemoveFileAtPath(none) || helpers.removeFileAtPath(none)
                     || helpers.shredFile(none, true) || helpers._shredFile(none, 0));
        EXPECT_EQ(helpers.getFileSize(none), 0u);
    }
}

TEST_F(Files, AreShreddedWithoutReachingThroughLinksOrIntoFolders)
{
    const QString target = add(u"target"_s, 3);
    const QString link = services.home.filePath(u"link"_s);
    ASSERT_TRUE(QFile::link(target, link));
    EXPECT_EQ(helpers.getFileSize(link), static_cast<quint64>(target.size()));
    EXPECT_TRUE(helpers.secureRemoveFileAtPath(link));
    EXPECT_FALSE(QFile::exists(link));
    EXPECT_EQ(helpers.getFileSize(target), 3u);
    EXPECT_FALSE(helpers.secureRemoveFileAtPath(services.home.path()));
    EXPECT_TRUE(QFile::exists(target));
    ASSERT_TRUE(QDir().mkdir(services.home.filePath(u"empty"_s)));
    EXPECT_TRUE(helpers.secureRemoveFileAtPath(services.home.filePath(u"empty"_s)));
    EXPECT_FALSE(QFile::exists(services.home.filePath(u"empty"_s)));
    struct stat folder;
    ASSERT_EQ(::stat(QFile::encodeName(services.home.path()).constData(), &folder), 0);
    EXPECT_EQ(helpers.getFileSize(services.home.path()), quint64(folder.st_size));
}

/// The file becomes a link, symbolic and hard by turns, between any two steps.
TEST_F(Files, AreShreddedWithoutReachingThroughLinksThatAreSwappedIn)
{
    files.isFast = true; // waiting for the disk would leave the swaps to themselves
    struct
    {
        const char *what;
        bool isSecure;
        bool (sharedHelpers::*remove)(const QString &);
    } const rows[] = {
        {"secureRemoveFileAtPath", false, &sharedHelpers::secureRemoveFileAtPath},
        {"removeFileAtPathQuickClean, secure", true, &sharedHelpers::removeFileAtPathQuickClean},
        {"removeFileAtPathQuickClean", false, &sharedHelpers::removeFileAtPathQuickClean},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        std::printf("%s: ", row.what);
        services.defaults[u"slvQuickClean.secure"_s] = row.isSecure;
        LinkRace race;
        const FileTree tree;
        const std::string file = tree.path("f"), link = tree.path("link");
        bool isHard = false;
        const auto swap = [&] {
            isHard = !isHard;
            const bool made = isHard ? ::link(race.fileElsewhere().c_str(), link.c_str()) == 0
                                     : ::symlink(race.fileElsewhere().c_str(), link.c_str()) == 0;
            const bool isThere = made && ::rename(link.c_str(), file.c_str()) == 0;
            std::this_thread::yield();
            const bool isMet = ::unlink(file.c_str()) != 0 && errno == ENOENT;
            return !isThere ? LinkRace::NotDone : isMet ? LinkRace::Removed : LinkRace::TakenBack;
        };
        race.run(swap, [&] {
            files.steps.clear();
            ::close(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            return (helpers.*row.remove)(tree.text("f"));
        });
    }
}

TEST_F(Files, AreRemovedQuicklyAsTheSettingSays)
{
    EXPECT_TRUE(helpers.removeFileAtPathQuickClean(add(u"f"_s, 1)));
    EXPECT_EQ(files.takeSteps(), QStringList{u"remove"_s});
    const std::pair<QVariant, bool> settings[] = {
        {u"NO"_s, false},   {u"no"_s, false}, {u""_s, false},    {u"0"_s, false},
        {u" -00"_s, false}, {u"YES"_s, true}, {u"true"_s, true}, {u" +07"_s, true},
        {0, false},         {0.5, true},      {true, true},      {QVariantList{true}, false}};
    for (const auto &[stored, secure] : settings) {
        services.defaults[u"slvQuickClean.secure"_s] = stored;
        EXPECT_EQ(helpers.secureQuickCleanValue(), secure) << qPrintable(stored.toString());
    }
    services.recorder.take();
    helpers.setSecureQuickCleanValue(true);
    EXPECT_EQ(services.recorder.take(), QStringList{u"synchronize"_s});
    EXPECT_EQ(services.defaults[u"slvQuickClean.secure"_s], QVariant(true));
    EXPECT_TRUE(helpers.removeFileAtPathQuickClean(add(u"f"_s, 1)));
    EXPECT_EQ(files.steps.count(u"write"_s), 1);
    QDir().mkpath(services.home.filePath(u"a/b"_s));
    EXPECT_TRUE(helpers.removeFileAtPath(services.home.filePath(u"a"_s)));
    EXPECT_FALSE(QFile::exists(services.home.filePath(u"a"_s)));
}

TEST_F(Files, LeaveTheExtendedLogToTheHost)
{
    EXPECT_THROW(helpers.extendedLoggingValue(), UnknownSelector);
    EXPECT_THROW(helpers.setExtendedLoggingValue(true), UnknownSelector);
}

TEST_F(Files, WaitBetweenTwoAndFifteenSeconds)
{
    const QString key = u"slvCritical.delay"_s;
    const std::pair<QVariant, int> stored[] = {{{}, 10},        {1, 10},
                                               {2, 2},          {15, 15},
                                               {16, 10},        {u"7"_s, 7},
                                               {u" 3s"_s, 3},   {1.6, 10},
                                               {2.9, 2},        {15.9, 15},
                                               {u"soon"_s, 10}, {u"99999999999"_s, 10},
                                               {1e300, 10},     {std::nan(""), 10},
                                               {true, 10},      {QStringList{u"7"_s}, 10}};
    for (const auto &[value, seconds] : stored) {
        services.defaults[key] = value;
        EXPECT_EQ(helpers.forcedDelayValue(), seconds) << qPrintable(value.toString());
    }
    for (const auto &[given, kept] : {std::pair(0, 2), std::pair(9, 9), std::pair(99, 15)}) {
        services.recorder.take();
        helpers.setForcedDelayValue(given);
        EXPECT_EQ(services.defaults[key], QVariant(kept));
        EXPECT_EQ(services.recorder.take(), QStringList{u"synchronize"_s});
    }
}

#include "FilesTest.moc"

#include "helpers/fileEnum.h"
#include "helpers/sharedHelpers.h"
#include "platform/foundation/FilePath.h"
#include "platform/foundation/RealFileSystem.h"
#include "support/TestServices.h"
#include "tests/platform/foundation/LinkRace.h"

#include <ctime>
#include <mutex>

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
    QString failing;                       ///< the step that fails, or at its n-th time: "write 2"
    bool isFast = false;                   ///< waits for no disk
    std::function<void()> between = [] {}; ///< called once the item is found, before each step
    QStringList takeSteps() { return std::exchange(steps, {}); }

    bool passes(const QString &step)
    {
        steps << step;
        between();
        return step != failing && u"%1 %2"_s.arg(step).arg(steps.count(step)) != failing;
    }
    std::unique_ptr<HeldItem> hold(const QString &path) override
    {
        auto item = std::make_unique<Item>(*this, path, RealFileSystem::hold(path));
        between();
        return item;
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
    struct Item : HeldItem
    {
        Item(WatchedFiles &watched, const QString &name, std::unique_ptr<HeldItem> item)
            : files(watched)
            , path(name)
            , real(std::move(item))
        { }
        std::optional<FileAttributes> attributes() const override { return real->attributes(); }
        bool remove() override { return files.passes(u"remove"_s) && real->remove(); }
        bool removeTree() override { return real->removeTree(); }
        std::unique_ptr<FileWriter> create(QByteArrayView content) override
        {
            auto file =
                files.passes(u"create %1"_s.arg(content.size())) ? real->create(content) : nullptr;
            return file ? std::make_unique<Writer>(files, path, std::move(file)) : nullptr;
        }

        WatchedFiles &files;
        QString path;
        std::unique_ptr<HeldItem> real;
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
    for (const QString &none : {u"/missing/file"_s, filled + u"/x"_s, u""_s, QString()}) {
        EXPECT_FALSE(helpers.secureRemoveFileAtPath(none) || helpers.removeFileAtPath(none)
                     || helpers.shredFile(none, true) || helpers._shredFile(none, 0));
        EXPECT_EQ(helpers.getFileSize(none), 0u);
    }
    EXPECT_FALSE(helpers.secureRemoveFileAtPath(filled + u'/')) << "no folder";
    EXPECT_TRUE(QFile::exists(filled));
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

namespace {

const struct Way
{
    const char *what;
    bool isSecure;
    bool (sharedHelpers::*remove)(const QString &);
} ways[] = {
    {"secureRemoveFileAtPath", false, &sharedHelpers::secureRemoveFileAtPath},
    {"removeFileAtPathQuickClean, secure", true, &sharedHelpers::removeFileAtPathQuickClean},
    {"removeFileAtPathQuickClean", false, &sharedHelpers::removeFileAtPathQuickClean},
};

} // namespace

/// The file becomes a link, symbolic and hard, a folder and a pipe by turns, between any two steps.
TEST_F(Files, AreShreddedWithoutReachingThroughWhatIsSwappedIn)
{
    files.isFast = true; // waiting for the disk would leave the swaps to themselves
    for (const Way &way : ways) {
        SCOPED_TRACE(way.what);
        std::printf("%s: ", way.what);
        services.defaults[u"slvQuickClean.secure"_s] = way.isSecure;
        LinkRace race;
        const FileTree tree;
        const std::string file = tree.path("f"), link = tree.path("link");
        const auto take = [](const std::string &path) {
            return ::unlink(path.c_str()) == 0 || ::rmdir(path.c_str()) == 0;
        };
        const std::string elsewhere = race.fileElsewhere();
        int (*const makers[])(const char *, const char *) = {
            ::link, ::symlink, [](const char *, const char *path) { return ::mkdir(path, 0700); },
            [](const char *, const char *path) { return ::mkfifo(path, 0600); }};
        int turn = 0;
        const auto swap = [&] {
            const int made = makers[++turn % 4](elsewhere.c_str(), link.c_str());
            const auto rename = [&](unsigned flags) {
                return ::renameat2(AT_FDCWD, link.c_str(), AT_FDCWD, file.c_str(), flags) == 0;
            };
            const bool isThere = made == 0 && (rename(RENAME_EXCHANGE) || rename(0));
            std::this_thread::yield();
            const bool isMet = !take(file) && errno == ENOENT;
            take(link);
            return !isThere ? LinkRace::NotDone : isMet ? LinkRace::Removed : LinkRace::TakenBack;
        };
        race.run(swap, [&] {
            files.steps.clear();
            ::close(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            return (helpers.*way.remove)(tree.text("f"));
        });
    }
}

/// A link to a folder with a file of the same name takes the folder's place once that was found.
TEST_F(Files, AreRemovedFromTheOneFolderThatTheirPathLedTo)
{
    files.isFast = true;
    for (const Way &way : ways) {
        SCOPED_TRACE(way.what);
        std::printf("%s: ", way.what);
        services.defaults[u"slvQuickClean.secure"_s] = way.isSecure;
        LinkRace race;
        const FileTree tree;
        tree.folder("t");
        const std::string folder = tree.path("t"), link = tree.path("link");
        ASSERT_EQ(::symlink(race.folderElsewhere().c_str(), link.c_str()), 0);
        const auto exchange = [&] {
            ::renameat2(AT_FDCWD, link.c_str(), AT_FDCWD, folder.c_str(), RENAME_EXCHANGE);
        };
        std::mutex swapping;
        std::atomic<bool> isFound = false;
        files.between = [&] { isFound = true; };
        const auto swap = [&] {
            if (!isFound)
                return LinkRace::NotDone;
            const std::lock_guard lock(swapping);
            if (!isFound)
                return LinkRace::NotDone;
            exchange();
            for (int i = 0; i < 10; ++i)
                std::this_thread::yield();
            exchange();
            return tree.has("t/0") ? LinkRace::TakenBack : LinkRace::Removed;
        };
        int failed = 0;
        const bool takesTrees =
            way.remove == &sharedHelpers::removeFileAtPathQuickClean && !way.isSecure;
        race.run(swap, [&] {
            takesTrees ? tree.folder("t/0"), tree.file("t/0/f") : tree.file("t/0", 3);
            files.steps.clear();
            const bool isRemoved = (helpers.*way.remove)(tree.text("t/0"));
            isFound = false; // first, or the swaps would hardly ever let go of the lock
            const std::lock_guard lock(swapping);
            failed += !isRemoved || tree.has("t/0");
            return isRemoved;
        });
        EXPECT_EQ(failed, 0);
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
    EXPECT_EQ(services.recorder.take(), QStringList{u"synchronize later"_s});
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
        EXPECT_EQ(services.recorder.take(), QStringList{u"synchronize later"_s});
    }
}

#include "FilesTest.moc"

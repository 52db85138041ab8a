#include "platform/foundation/DirectoryWalk.h"
#include "tests/platform/foundation/FileTree.h"

#include <filesystem>
#include <sys/socket.h>
#include <sys/un.h>

static FileRecords walk(const QString &path, int threads = 3)
{
    FileRecords records;
    DirectoryWalk::run(
        path, [&](FileRecord &&record) { records.push_back(std::move(record)); }, threads);
    return records;
}

/// What a reader finds who goes from entry to entry.
static FileRecords readOneByOne(const std::string &folder)
{
    FileRecords records;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
        struct stat status;
        if (::lstat(entry.path().c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
            records.push_back({FilePath::decode(entry.path().native()), status.st_size});
    }
    return records;
}

static size_t openDescriptors()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

TEST(FilePath, KeepsEveryName)
{
    const std::tuple<QByteArray, std::u16string> cases[] = {
        {"plain", u"plain"},
        {"\357\273\277bom", u"\ufeffbom"},
        {"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", u"\u00e9\u20ac\U0001f600"},
        {"a\xffz\x80", {u'a', 0xdcff, u'z', 0xdc80}},
        {"\xc0\xaf", {0xdcc0, 0xdcaf}},                         // overlong
        {"\xe0\x9f\xbf", {0xdce0, 0xdc9f, 0xdcbf}},             // overlong
        {"\xed\xa0\x80", {0xdced, 0xdca0, 0xdc80}},             // a surrogate
        {"\xf4\x90\x80\x80", {0xdcf4, 0xdc90, 0xdc80, 0xdc80}}, // beyond the last character
        {"\xe2\x82", {0xdce2, 0xdc82}},
        {"\xe2\x82\xc3\xa9", {0xdce2, 0xdc82, 0xe9}},
    };
    for (const auto &[name, text] : cases) {
        SCOPED_TRACE(name.toHex().toStdString());
        EXPECT_EQ(FilePath::decode(name),
                  QStringView(text.data(), static_cast<qsizetype>(text.size())));
        EXPECT_EQ(FilePath::encode(FilePath::decode(name)), name);
    }
    const char16_t none[][3] = {
        {u'a', 0, u'b'}, {u'a', 0xd800, u'b'}, {0xdc00, u'a', u'b'}, {u'a', u'b', 0xdbff}};
    for (const auto &units : none)
        EXPECT_TRUE(FilePath::encode(QStringView(units, 3)).isNull());
}

TEST(DirectoryWalk, FindsAllThatIsNoFolder)
{
    const FileTree tree, other;
    other.file("outside");
    for (const char *folder : {"c", "a", "a/.hidden", "a/App.app", "a/App.app/\xff"})
        tree.folder(folder);
    tree.file("a/b.txt", 5);
    tree.file("a/.hidden/h", 1);
    tree.file("a/App.app/\xff/\xe4\xf6", 2);
    ASSERT_EQ(::symlink(other.path().c_str(), tree.path("link").c_str()), 0);
    ASSERT_EQ(::symlink("nowhere", tree.path("a/broken").c_str()), 0);
    makePipe(tree.text("pipe"));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{AF_UNIX, {}};
    tree.path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    ::close(socket);

    const FileRecords expected = readOneByOne(tree.path());
    ASSERT_EQ(expected.size(), 7u);
    EXPECT_EQ(walk(tree.text()), expected);
    EXPECT_EQ(walk(tree.text() + u'/'), expected);
    EXPECT_EQ(walk(u'/' + tree.text()), expected);
    // The start alone may be a link.
    for (const auto &path : {tree.text("link"), tree.text("link/")})
        EXPECT_EQ(walk(path), (FileRecords{{tree.text("link/outside"), 0}}));
    for (const auto &path : {tree.text("c"), tree.text("missing"), tree.text("a/b.txt"),
                             tree.text("a") + QChar(0) + u'b', QString()})
        EXPECT_TRUE(walk(path).empty()) << path.toStdString();
}

TEST(DirectoryWalk, KeepsTheOrderOfTheFoldersWithManyThreadsAndFewDescriptors)
{
    const FileTree tree;
    for (size_t i = 0; i < 60; ++i) {
        const std::string folder = std::to_string(i);
        tree.folder(folder);
        for (size_t k = 0; k < 40; ++k) {
            tree.file(folder + "/f" + std::to_string(k), i * k);
            tree.folder(folder + "/d" + std::to_string(k));
            tree.file(folder + "/d" + std::to_string(k) + "/g");
        }
    }
    for (int i = 0; i < 10000; ++i)
        tree.file("7/many" + std::to_string(i), 3);
    const FileRecords expected = readOneByOne(tree.path());
    const size_t open = openDescriptors();
    const FewDescriptors few(256);
    for (int threads : {1, 2, 4})
        EXPECT_TRUE(walk(tree.text(), threads) == expected) << threads;
    {
        const FewDescriptors hardlyAny(openDescriptors() + 6);
        EXPECT_TRUE(walk(tree.text()) == expected);
    }
    EXPECT_THROW(DirectoryWalk::run(
                     tree.text(), [](FileRecord &&) { throw std::runtime_error("enough"); }, 3),
                 std::runtime_error);
    EXPECT_EQ(openDescriptors(), open);
}

TEST(DirectoryWalk, GoesDeeperThanPathsReach)
{
    constexpr int depth = 2000;
    const FileTree tree;
    tree.deep(depth, true);
    const FewDescriptors few(256);
    const FileRecords records = walk(tree.text());
    EXPECT_EQ(records.size(), static_cast<size_t>(depth));
    qsizetype longest = 0;
    for (const FileRecord &record : records)
        longest = std::max(longest, record.path.size());
    EXPECT_EQ(longest, tree.text("deep/file").size() + (depth - 1) * u"/level"_s.size());
}

TEST(DirectoryWalk, TellsFoldersAlsoWhereNothingCanBeAsked)
{
    const FileTree tree;
    for (const char *folder : {"list", "list/folder", "list/other", "deaf"})
        tree.folder(folder);
    tree.file("list/file", 7);
    tree.file("deaf/file", 7);
    ::chmod(tree.path().c_str(), 0755);
    ::chmod(tree.path("list").c_str(), 0444);
    ::chmod(tree.path("deaf").c_str(), 0111);
    FileRecords records;
    bool isDeaf = false;
    {
        const NoPowers none;
        struct stat status;
        isDeaf = ::lstat(tree.path("list/file").c_str(), &status) != 0;
        records = walk(tree.text());
    }
    for (const char *folder : {"list", "deaf"})
        ::chmod(tree.path(folder).c_str(), 0755);
    if (!isDeaf)
        GTEST_SKIP() << "this user keeps its powers";
    EXPECT_EQ(records, (FileRecords{{tree.text("list/file"), std::nullopt}}));
}

TEST(DirectoryWalk, LosesOnlyTheWayBackWhereAFolderIsMovedMeanwhile)
{
    const FileTree tree;
    tree.deep(40, true);
    for (int i = 0; i < 300; ++i)
        tree.file("stays" + std::to_string(i));
    for (int i = 0; i < 50; ++i) { // some of them listed behind the folder
        tree.file("deep/" + std::to_string(i));
        tree.folder("deep/level/" + std::to_string(i));
    }
    const FewDescriptors few(64); // upper folders are given up on the way down
    size_t staying = 0, below = 0;
    DirectoryWalk::run(
        tree.text(),
        [&](FileRecord &&record) {
            staying += record.path.contains(u"/stays"_s);
            below += record.path.contains(u"/deep/"_s);
            // The walk is further down by then, and will not find the way back.
            if (record.path.count(u"/level"_s) > 10)
                ::rename(tree.path("deep/level/level").c_str(), tree.path("moved").c_str());
        },
        1);
    EXPECT_TRUE(tree.has("moved"));
    EXPECT_EQ(staying, 300u);
    EXPECT_GE(below, 38u);
    EXPECT_LE(below, 90u);
}

TEST(DirectoryWalk, SurvivesFoldersThatComeAndGo)
{
    const FileTree tree;
    const FileTree other;
    other.file("outside");
    for (int i = 0; i < 1200; ++i)
        tree.file("stays" + std::to_string(i));
    tree.folder("x");
    std::atomic<bool> stop = false;
    std::thread changer([&] {
        for (int i = 0; !stop; ++i) {
            const std::string folder = tree.path("x/" + std::to_string(i % 50));
            ::rename((folder + "-").c_str(), folder.c_str());
            if (::mkdir(folder.c_str(), 0755) == 0)
                ::mkdir((folder + "/inner").c_str(), 0755);
            ::rename(folder.c_str(), (folder + "-").c_str());
            ::unlink(folder.c_str());
            ::symlink(other.path().c_str(), folder.c_str());
        }
    });
    for (int i = 0; i < 100; ++i) {
        size_t staying = 0;
        for (const FileRecord &record : walk(tree.text())) {
            staying += record.path.contains(u"/stays"_s);
            EXPECT_FALSE(record.path.endsWith(u"outside"_s));
        }
        EXPECT_EQ(staying, 1200u);
    }
    stop = true;
    changer.join();
}

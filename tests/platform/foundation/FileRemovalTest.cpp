#include "platform/foundation/RealFileSystem.h"
#include "tests/platform/foundation/FileTree.h"
#include "tests/platform/foundation/LinkRace.h"

#include <sched.h>
#include <sys/mount.h>

TEST(FileRemoval, TakesTreesAndNeverWhatLinksLeadTo)
{
    const FileTree tree, other;
    other.file("kept");
    tree.folder("t");
    tree.folder("t/\xff");
    tree.file("t/\xff/f");
    for (const char *link : {"t/link", "top"})
        ASSERT_EQ(::symlink(other.path().c_str(), tree.path(link).c_str()), 0);
    RealFileSystem files;
    EXPECT_FALSE(files.hold(tree.text("t"))->remove());
    for (const char *name : {"t/.", "t/..", "missing", "t/link/missing"})
        EXPECT_FALSE(removeTree(tree.text(name))) << name;
    for (const QString &path : {u"/"_s, u"//"_s, QString(), tree.text("t") + QChar(0)})
        EXPECT_FALSE(removeTree(path)) << path.toStdString();
    EXPECT_TRUE(tree.has("t/\xff/f"));
    EXPECT_TRUE(files.hold(tree.text("t") + u'/')->removeTree());
    EXPECT_TRUE(files.hold(tree.text("top/"))->removeTree());
    EXPECT_FALSE(tree.has("t") || tree.has("top"));
    EXPECT_TRUE(other.has("kept"));
}

TEST(FileRemoval, ReachesBelowTheLongestPath)
{
    const FileTree tree;
    const std::string last = tree.deep(2000, true);
    RealFileSystem files;
    const FewDescriptors few(256);
    const QString file = tree.text(last.substr(0, last.size() - 6) + "/file");
    EXPECT_EQ(files.attributes(file).value_or(FileAttributes{FileAttributes::Other, 1}).size, 0);
    EXPECT_TRUE(files.attributes(tree.text(last) + u'/').has_value());
    const auto item = files.hold(file);
    EXPECT_TRUE(item->remove());
    EXPECT_FALSE(files.exists(file));
    EXPECT_TRUE(item->create("new"));
    EXPECT_EQ(files.readFile(file, 3), QByteArray("new"));
    EXPECT_TRUE(removeTree(tree.text("deep/level")));
    EXPECT_TRUE(tree.has("deep/file"));
    EXPECT_FALSE(tree.has("deep/level"));
}

TEST(FileRemoval, StaysInTheTreeWhileLinksAreSwappedIn)
{
    const FileTree tree;
    LinkRace race;
    const std::string top = tree.path("t"), folder = tree.path("t/a"), aside = tree.path("t/b"),
                      link = tree.path("link");
    const auto swap = [&] {
        ::mkdir(folder.c_str(), 0755);
        ::rename(folder.c_str(), aside.c_str());
        const bool isThere = ::symlink(race.folderElsewhere().c_str(), folder.c_str()) == 0;
        const bool isMet = ::unlink(folder.c_str()) != 0 && errno == ENOENT;
        ::rename(aside.c_str(), folder.c_str());
        ::renameat2(AT_FDCWD, link.c_str(), AT_FDCWD, top.c_str(), RENAME_EXCHANGE);
        return !isThere ? LinkRace::NotDone : isMet ? LinkRace::Removed : LinkRace::TakenBack;
    };
    race.run(swap, [&] {
        ::mkdir(top.c_str(), 0755);
        ::mkdir(folder.c_str(), 0755);
        [[maybe_unused]] const int linked = ::symlink(race.folderElsewhere().c_str(), link.c_str());
        return removeTree(tree.text("t"));
    });
}

TEST(FileRemoval, LeavesMountedVolumesAndRemovesTheRest)
{
    const FileTree tree, other;
    other.file("kept");
    for (const char *folder : {"t", "t/mount", "t/z"})
        tree.folder(folder);
    tree.file("t/a");
    tree.file("t/z/b");
    bool mounted = false;
    const std::string mount = tree.path("t/mount");
    std::thread([&] { // in a view of the file system of its own
        mounted = ::unshare(CLONE_NEWNS) == 0
            && ::mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
            && ::mount(other.path().c_str(), mount.c_str(), nullptr, MS_BIND, nullptr) == 0;
        if (!mounted)
            return;
        EXPECT_FALSE(removeTree(tree.text("t/mount")));
        EXPECT_FALSE(removeTree(tree.text("t")));
    })
        .join();
    if (!mounted)
        GTEST_SKIP() << "this user may not mount";
    EXPECT_TRUE(other.has("kept") && tree.has("t/mount"));
    EXPECT_FALSE(tree.has("t/a") || tree.has("t/z"));
}

TEST(FileRemoval, LeavesWhatItMayNotRemoveAndTakesTheRest)
{
    const FileTree tree;
    for (const char *folder : {"t", "t/locked", "t/shut", "t/z"})
        tree.folder(folder);
    for (const char *file : {"t/locked/kept", "t/z/b"})
        tree.file(file);
    for (const auto &[folder, mode] :
         {std::pair("", 0777), {"t", 0777}, {"t/z", 0777}, {"t/locked", 0555}, {"t/shut", 0}})
        ASSERT_EQ(::chmod(tree.path(folder).c_str(), mode), 0);
    {
        const NoPowers none;
        EXPECT_FALSE(removeTree(tree.text("t")));
    }
    EXPECT_TRUE(tree.has("t/locked/kept"));
    EXPECT_FALSE(tree.has("t/shut") || tree.has("t/z"));
    ::chmod(tree.path("t/locked").c_str(), 0755);
}

TEST(RealFileSystem, WritesOnlyWhatItIsSupposedTo)
{
    const FileTree tree;
    RealFileSystem files;
    tree.file("target", 3);
    ASSERT_EQ(::symlink("target", tree.path("link").c_str()), 0);
    ASSERT_EQ(::link(tree.path("target").c_str(), tree.path("second").c_str()), 0);
    ASSERT_EQ(::mkfifo(tree.path("pipe").c_str(), 0600), 0);
    tree.folder("empty");
    ASSERT_EQ(::symlink("empty", tree.path("way").c_str()), 0);
    for (const char *name : {"target/", "link/", "way/", "empty/.", "empty/..", "way/target"})
        EXPECT_FALSE(files.hold(tree.text(name))->remove()) << name;
    EXPECT_TRUE(files.hold(tree.text("empty/"))->remove() && tree.has("way"));
    for (const char *name : {"target", "link", "pipe", "", "missing/x"})
        EXPECT_FALSE(files.hold(tree.text(name))->create("x")) << name;
    {
        // Written over from its start, whatever has its name by then.
        const auto file = files.hold(tree.text("new"))->create("first");
        ASSERT_NE(file, nullptr);
        ASSERT_EQ(::rename(tree.path("new").c_str(), tree.path("moved").c_str()), 0);
        ASSERT_EQ(::link(tree.path("target").c_str(), tree.path("new").c_str()), 0);
        EXPECT_TRUE(file->write("FI") && file->close());
        EXPECT_EQ(files.readFile(tree.text("moved"), 5), QByteArray("FIrst"));
        EXPECT_EQ(files.readFile(tree.text("target"), 3), QByteArray(3, 0));
    }
    EXPECT_TRUE(files.writeFile(tree.text("link"), "content"));
    EXPECT_EQ(files.readFile(tree.text("target"), 7), QByteArray("content"));
    EXPECT_EQ(files.attributes(tree.text("link"))->type, FileAttributes::Link);
    EXPECT_FALSE(files.writeFile(tree.text("pipe"), "x"));
    EXPECT_EQ(files.readFile(tree.text("target"), 6), std::nullopt);
    for (const char *name : {"pipe", "", "missing"})
        EXPECT_EQ(files.readFile(tree.text(name), 6), std::nullopt) << name;
}

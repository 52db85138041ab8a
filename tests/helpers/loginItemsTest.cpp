#include "helpers/loginItems.h"

#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/FilePath.h"
#include "platform/foundation/TreeRemoval.h"
#include "support/FullDisk.h"
#include "support/TestServices.h"

struct LoginItems : testing::Test
{
    LoginItems()
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(services.home.filePath(u"conf"_s)));
        services.addResource(u"../Info.plist"_s, "{ CFBundleExecutable = solvane; }");
        program = makeProgram(services.root.filePath(u"Solvane.app"_s));
        items = std::make_unique<loginItems>();
    }
    ~LoginItems() override { qunsetenv("XDG_CONFIG_HOME"); }

    static QString makeProgram(const QString &bundle)
    {
        QFile file(TestServices::write(bundle + u"/Contents/MacOS/solvane"_s,
                                       "#!/bin/sh\n: > \"$0 $*\"\n"));
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
        return file.fileName();
    }
    void put(const QString &name, const QByteArray &content) const
    {
        TestServices::write(folder + u'/' + name, content);
    }
    QString files() const
    {
        const auto all = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
        return QDir(folder).entryList(all).join(u' ');
    }

    TestServices services;
    QString folder = services.home.filePath(u"conf/autostart"_s);
    QString own = folder + u"/com.solvane.Solvane.desktop"_s;
    QString program;
    std::unique_ptr<loginItemsProtocol> items;
};

TEST_F(LoginItems, AddsOneEntryThatDesktopsAcceptAndRemovesIt)
{
    items->setLaunchOnLogin(false);
    EXPECT_FALSE(QFile::exists(services.home.filePath(u"conf"_s))) << "asking makes nothing";
    EXPECT_FALSE(items->launchOnLogin());
    items->setLaunchOnLogin(true);
    EXPECT_TRUE(items->launchOnLogin());
    EXPECT_EQ(items->mainBundleLoginItemCopy(), own);
    const auto entry = DesktopEntry::read(own);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry.value().command(), QStringList({program, u"--hidden"_s}));
    EXPECT_TRUE(entry.value().boolean(u"X-Solvane-HideOnLaunch"_s, false));
    put(u"com.solvane.Solvane.desktop"_s, "[Desktop Entry]\nHidden=true\n");
    EXPECT_FALSE(items->launchOnLogin());
    items->setLaunchOnLogin(true);
    items->setLaunchOnLogin(true);
    EXPECT_EQ(files(), u"com.solvane.Solvane.desktop"_s) << "replaced, not doubled";
    put(u"a.desktop"_s, "[Desktop Entry]\nExec=" + QFile::encodeName(program));
    items->setLaunchOnLogin(false);
    EXPECT_EQ(files(), u"com.solvane.Solvane.desktop"_s) << "only the first one";
    EXPECT_TRUE(items->launchOnLogin());
    items->removeMainBundleFromLoginItems();
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(LoginItems, CountsWhatTheSessionStarts)
{
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const QByteArray plain = "[Desktop Entry]\nType=Application\nExec=true %U\n";
    const std::tuple<const char *, QByteArray, bool> cases[] = {
        {"plain.desktop", plain, true},
        {"other.desktop", "# c\n\n" + plain + "[Other]\nHidden=true\n", true},
        {"hidden.desktop", plain + "Hidden=true\n", false},
        {"gnome.desktop", plain + "X-GNOME-Autostart-enabled = false\n", false},
        {"only.desktop", plain + "OnlyShowIn=X\\;Y;GNOME;\n", true},
        {"elsewhere.desktop", plain + "OnlyShowIn=KDE;gnome;X\\;GNOME;\n", false},
        {"nowhere.desktop", plain + "OnlyShowIn=\n", false},
        {"not.desktop", plain + "NotShowIn=KDE;GNOME\n", false},
        {"notkde.desktop", plain + "NotShowIn=KDE;\n", true},
        {"first.desktop", plain + "OnlyShowIn=GNOME;\nNotShowIn=ubuntu;\n", false},
        {"try.desktop", plain + "TryExec=true\n", true},
        {"tryhere.desktop", plain + "TryExec=" + program.toUtf8() + '\n', true},
        {"trymissing.desktop", plain + "TryExec=no-such-program\n", false},
        {"tryfile.desktop", plain + "TryExec=/etc/passwd\n", false},
        {"latin.desktop", plain + "Name=\xe4\n", false},
        {"binary.desktop", plain + QByteArray("Name=\0\n", 7), false},
        {"huge.desktop", plain + QByteArray(2'000'000, '#'), false},
        {"wrong.desktop", "[Other]\n" + plain, false},
        {"empty.desktop", "", false},
        {"c.desktop.bak", plain, false},
        {"\xff.desktop", plain, true},
    };
    QStringList counted;
    for (const auto &[name, content, counts] : cases) {
        put(FilePath::decode(name), content);
        if (counts)
            counted << folder + u'/' + FilePath::decode(name);
    }
    counted.sort();
    QDir(folder).mkdir(u"folder.desktop"_s);
    makePipe(folder + u"/pipe.desktop"_s);
    EXPECT_EQ(items->loginItems(), counted);
    EXPECT_TRUE(items->mainBundleLoginItemCopy().isNull());
    removeTree(folder);
    qunsetenv("XDG_CURRENT_DESKTOP");
}

TEST_F(LoginItems, FindsTheProgramHoweverItIsWritten)
{
    const QString link = services.root.filePath(u"a link"_s);
    ASSERT_TRUE(QFile::link(program, link));
    ASSERT_TRUE(QFile::link(program, services.root.filePath(u"solvane-linked"_s)));
    const QByteArray search = qgetenv("PATH");
    qputenv("PATH", search + ':' + QFile::encodeName(services.root.path()));
    const std::tuple<QString, bool> cases[] = {
        {program, true},
        {program + u" --hidden %U"_s, true},
        {u'"' + link + u"\" %f"_s, true},
        {link, false},
        {u"solvane-linked"_s, true},
        {u"./solvane-linked"_s, false},
        {u"env "_s + program, false},
        {u'"' + program, false},
        {program + u"-missing"_s, false},
        {QString(), false},
    };
    for (const auto &[command, isOurs] : cases) {
        put(u"x.desktop"_s, "[Desktop Entry]\nExec=" + command.toUtf8() + '\n');
        EXPECT_EQ(items->launchOnLogin(), isOurs) << qPrintable(command);
    }
    qputenv("PATH", search);
}

TEST_F(LoginItems, QuotesEveryPathThatAnEntryCanHold)
{
    for (const char *name : {"a b", "a\"b", "a$b`c`", "a\\b", "a\\nb", "50%", "%f", "a'b;c&d",
                             "a\nb\tc", "a=b", "a=%=", "\xc3\xa4\xe6\x97\xa5"}) {
        SCOPED_TRACE(name);
        const QString bundle = services.root.path() + u'/' + QString::fromUtf8(name) + u".app"_s;
        const QString program = makeProgram(bundle);
        QFile::copy(services.root.filePath(u"Solvane.app/Contents/Info.plist"_s),
                    bundle + u"/Contents/Info.plist"_s);
        Bundle main(bundle);
        systemServices().mainBundle = &main;
        items->setLaunchOnLogin(true);
        EXPECT_TRUE(items->launchOnLogin());
        EXPECT_EQ(QProcess::execute(u"desktop-file-validate"_s, {own}), 0);
        // The one thing that a name can do to a session: the program says that it runs.
        EXPECT_EQ(QProcess::execute(u"gio"_s, {u"launch"_s, own}), 0);
        EXPECT_SOON(QFile::exists(program + u" --hidden"_s));
    }
    const QString strange = services.root.path() + u'/' + QChar(0xdce4); // no entry can name it
    const QByteArray named = QFile::encodeName(services.root.filePath(u"a b.app"_s));
    ASSERT_EQ(::rename(named.constData(), FilePath::encode(strange).constData()), 0);
    Bundle main(strange);
    systemServices().mainBundle = &main;
    EXPECT_FALSE(main.executablePath().isNull());
    QFile::remove(own);
    items->setLaunchOnLogin(true);
    EXPECT_TRUE(files().isEmpty());
    removeTree(strange);
}

TEST_F(LoginItems, LosesNothingWhereItCannotWrite)
{
    const QString elsewhere = services.root.filePath(u"the system's.desktop"_s);
    ASSERT_TRUE(QFile::copy(program, elsewhere));
    QDir().mkpath(folder);
    ASSERT_TRUE(QFile::link(elsewhere, own));
    {
        const FullDisk full(16);
        items->setLaunchOnLogin(true);
    }
    EXPECT_EQ(files(), u"com.solvane.Solvane.desktop"_s);
    EXPECT_TRUE(QFileInfo(own).isSymLink()) << "a full disk";
    items->setLaunchOnLogin(true);
    EXPECT_TRUE(items->launchOnLogin());
    EXPECT_EQ(QFileInfo(elsewhere).size(), QFileInfo(program).size()) << "not through the link";

    QFile::remove(own);
    QDir(folder).mkdir(u"com.solvane.Solvane.desktop"_s);
    items->setLaunchOnLogin(true);
    EXPECT_EQ(files(), u"com.solvane.Solvane.desktop"_s) << "a folder in its place";
    EXPECT_FALSE(items->launchOnLogin());
    QDir(folder).removeRecursively();
    makeFile(folder, {});
    loginItems none;
    none.setLaunchOnLogin(true);
    EXPECT_FALSE(none.launchOnLogin());
    EXPECT_EQ(QFileInfo(folder).size(), 0);
    for (const char *settings : {"", "relative"}) {
        qputenv("XDG_CONFIG_HOME", settings);
        loginItems atHome;
        atHome.setLaunchOnLogin(true);
        EXPECT_EQ(atHome.mainBundleLoginItemCopy(),
                  services.home.filePath(u".config/autostart/com.solvane.Solvane.desktop"_s));
    }

    // A name that is no UTF-8 leads to the very folder.
    const QByteArray strange = QFile::encodeName(services.home.path()) + "/\xe4/\xf6";
    qputenv("XDG_CONFIG_HOME", strange);
    loginItems there;
    there.setLaunchOnLogin(true);
    EXPECT_EQ(::access((strange + "/autostart/com.solvane.Solvane.desktop").constData(), F_OK), 0);
    EXPECT_TRUE(there.launchOnLogin());
    there.setLaunchOnLogin(false);
    EXPECT_FALSE(there.launchOnLogin());
    removeTree(services.home.path() + u'/' + QChar(0xdce4));
}

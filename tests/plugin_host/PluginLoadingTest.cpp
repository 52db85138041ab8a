#include "plugin_host/mndPlugins.h"
#include "plugin_host/SidebarTree.h"
#include "support/TestServices.h"

#include <dlfcn.h>
#include <elf.h>

namespace {

struct Reports : PluginLoadObserver
{
    void bundleHandled(const PluginLoadReport &report) override { all << report; }
    QList<PluginLoadReport> all;
};

struct PluginLoading : testing::Test
{
    PluginLoading() { plugins.setObserver(&reports); }

    QString own(const QString &name) const { return services.resources() + u'/' + name; }

    QStringList ids() const
    {
        QStringList found;
        for (quint64 i = 0; i < plugins.count(); ++i)
            found << mndPlugins::info(plugins.pluginAtIndex(i)).string(u"id"_s).section(u'.', -1);
        return found;
    }

    TestServices services;
    Reports reports;
    mndPlugins plugins{nullptr};
};

enum class Versions { WithoutIndices, Uncounted, WithoutNames, OfAnotherLibrary };

/// Changes what a module says of its symbols' versions to what the loader takes on trust.
void damageVersions(const QString &path, Versions damage)
{
    QByteArray module = fileContent(path);
    const auto *header = reinterpret_cast<Elf64_Ehdr *>(module.data());
    const auto *segment = reinterpret_cast<Elf64_Phdr *>(module.data() + header->e_phoff);
    while (segment->p_type != PT_DYNAMIC)
        ++segment;
    const auto entry = [&](qint64 tag) {
        auto *found = reinterpret_cast<Elf64_Dyn *>(module.data() + segment->p_offset);
        while (found->d_tag != tag)
            ++found;
        return found;
    };
    // In the first segment, which lies in memory as in the file.
    auto *need = reinterpret_cast<Elf64_Verneed *>(module.data() + entry(DT_VERNEED)->d_un.d_val);
    if (damage == Versions::WithoutIndices)
        entry(DT_VERSYM)->d_tag = DT_DEBUG;
    else if (damage == Versions::Uncounted)
        entry(DT_VERNEEDNUM)->d_un.d_val = 0;
    else if (damage == Versions::WithoutNames)
        need->vn_cnt = 0;
    else
        ++need->vn_file;
    makeFile(path, module);
}

} // namespace

TEST_F(PluginLoading, TakesOwnBundlesFirstAndTheFirstOfAnIdWins)
{
    services.addFixture(u"NoView"_s, services.resources());
    services.addFixture(u"Good"_s, services.resources());
    services.addFixture(u"Twin"_s, services.supportFolder(), u"Another"_s);
    services.addFixture(u"Hidden"_s, services.supportFolder());
    services.homePath += u'/';
    plugins.loadAllPlugins();

    EXPECT_EQ(ids(), (QStringList{u"Good"_s, u"NoView"_s, u"Hidden"_s}));
    EXPECT_EQ(mndPlugins::info(plugins.pluginAtIndex(0)).string(u"name"_s), u"Good"_s);
    ASSERT_EQ(reports.all.size(), 4);
    EXPECT_FALSE(reports.all[2].result || reports.all[2].accepted) << "the second of an id";
    EXPECT_EQ(reports.all[3].path, services.supportFolder() + u"/Hidden.bundle"_s);
    EXPECT_TRUE(plugins.listContainsID(u"plugin.fixture.Good"_s));
    EXPECT_FALSE(plugins.listContainsID(u"plugin.fixture"_s));
    EXPECT_FALSE(plugins.listContainsID({}));
    EXPECT_THROW(plugins.pluginAtIndex(3), std::out_of_range) << "a loose guard";
    EXPECT_TRUE(plugins.pluginAtIndex(4).isAbsent());
}

TEST_F(PluginLoading, RecoloursTheViewsOfPlugins)
{
    services.addFixture(u"Panels"_s, services.resources());
    plugins.loadAllPlugins();
    ASSERT_EQ(plugins.count(), 1U);
    const auto *view = mndPlugins::info(plugins.pluginAtIndex(0)).value<QWidget *>(u"view"_s);
    EXPECT_EQ(view->findChild<QPushButton *>()->palette().color(QPalette::ButtonText), Qt::white);
}

TEST_F(PluginLoading, LooksOnlyAtFoldersDirectlyInTheSupportFolder)
{
    services.addFixture(u"Good"_s, services.supportFolder() + u"/Nested"_s);
    services.addFixture(u"Hidden"_s, services.supportFolder() + u"/Wrong"_s);
    QDir().rename(services.supportFolder() + u"/Wrong/Hidden.bundle"_s,
                  services.supportFolder() + u"/Hidden.BUNDLE"_s);
    makeFile(services.supportFolder() + u"/Plain.bundle"_s, {});
    QFile::link(u"."_s, services.supportFolder() + u"/Circle.bundle"_s);
    QFile::link(u"Nested/Good.bundle"_s, services.supportFolder() + u"/Link.bundle"_s);
    plugins.loadAllPlugins();
    EXPECT_EQ(plugins.count(), 0U);
    ASSERT_EQ(reports.all.size(), 2) << "of the links alone";
    for (const PluginLoadReport &report : reports.all)
        EXPECT_TRUE(report.problems.value(0).startsWith(u"it is a link"_s));
}

TEST_F(PluginLoading, LoadsAModuleOnceHoweverManyBundlesLeadToIt)
{
    services.addFixture(u"Good"_s, services.resources());
    QDir().mkpath(own(u"Linked.bundle"_s));
    QFile::link(u"../Good.bundle/Contents"_s, own(u"Linked.bundle/Contents"_s));
    QFile::link(u"Good.bundle"_s, own(u"Other.bundle"_s));
    plugins.loadAllPlugins();
    EXPECT_EQ(ids(), QStringList{u"Good"_s});
    ASSERT_EQ(reports.all.size(), 3);
    for (const PluginLoadReport &report : reports.all.mid(1)) {
        EXPECT_FALSE(report.result);
        EXPECT_TRUE(report.problems.value(0).startsWith(u"its module is loaded already"_s));
    }
    EXPECT_NE(plugins.pluginAtIndex(0).value<QObject *>(u"obj"_s), nullptr);
}

TEST_F(PluginLoading, IsNotReachedByWhatHappensToTheFile)
{
    const QStringList names{u"Good"_s, u"LinkedByLld"_s};
    for (const QString &name : names)
        services.addFixture(name, services.resources());
    plugins.loadAllPlugins();
    ASSERT_EQ(ids(), names);
    for (quint64 i = 0; i < plugins.count(); ++i) {
        const QString &name = names[static_cast<qsizetype>(i)];
        const QString module = own(u"%1.bundle/Contents/MacOS/%1.so"_s.arg(name));
        // As cp does, which writes into the file that is there.
        ASSERT_TRUE(QFile(module).resize(0));
        QObject *plugin = plugins.pluginAtIndex(i).value<QObject *>(u"obj"_s);
        EXPECT_TRUE(QMetaObject::invokeMethod(plugin, "replaceView"));
        Dl_info known = {};
        EXPECT_NE(::dladdr(*reinterpret_cast<void **>(plugin), &known), 0);
        EXPECT_EQ(QString::fromUtf8(known.dli_fname), module) << "who is blamed for a crash";
    }
}

TEST_F(PluginLoading, RefusesBundlesThatOthersCouldHaveWritten)
{
    const char *module = "MacOS/WithLibrary.so", *info = "Info.plist", *folder = "MacOS",
               *above = "../..", *library = "Libraries/libfixture_library.so";
    const uid_t user = ::geteuid(), other = user + 1000;
    struct
    {
        const char *path;
        mode_t mode;
        uid_t owner;
        gid_t group;
        bool accepted;
        const char *said;
    } const cases[] = {
        {module, 0644, user, ::getegid(), true, nullptr},
        {module, 0666, user, ::getegid(), false, "everybody may write"},
        {info, 0606, user, ::getegid(), false, "everybody may write"},
        {library, 0646, user, ::getegid(), false, "everybody may write"},
        {folder, 0777, user, ::getegid(), false, "everybody may write"},
        {above, 0777, user, ::getegid(), false, "everybody may write"},
        {above, 01777, user, ::getegid(), true, nullptr},
        {module, 0664, user, 0, true, nullptr},
        {module, 0664, user, 1, true, "the group "},
        {folder, 0775, user, 1, true, "the group "},
        {module, 0644, other, ::getegid(), false, "belongs to "},
        {above, 0755, other, ::getegid(), false, "belongs to "},
    };
    int number = 0;
    for (const auto &one : cases) {
        const QString place = services.supportFolder() + u'/' + QString::number(++number);
        services.addFixture(u"WithLibrary"_s, place);
        const QString bundle = place + u"/WithLibrary.bundle"_s;
        const QByteArray path = (bundle + u"/Contents/"_s).toUtf8() + one.path;
        // Only root gives files away.
        if (::chown(path.constData(), one.owner, one.group) != 0 && user != 0)
            continue;
        ASSERT_EQ(::chmod(path.constData(), one.mode), 0) << path.constData();
        mndPlugins registry(nullptr);
        registry.setObserver(&reports);
        EXPECT_EQ(registry.loadPluginFromPath(bundle), one.accepted || one.path == library);
        EXPECT_EQ(registry.count(), one.accepted ? 1U : 0U) << number;
        const QString problems = reports.all.last().problems.join(u'\n');
        EXPECT_EQ(problems.isEmpty(), !one.said) << number << qPrintable(problems);
        EXPECT_TRUE(problems.contains(QLatin1StringView(one.said)))
            << number << qPrintable(problems);
    }
    EXPECT_EQ(services.recorder.take().filter(u"is not loaded"_s).isEmpty(), false);
}

TEST_F(PluginLoading, HoldsOutAmongTenThousandEntries)
{
    const QDir folder(services.supportFolder());
    ASSERT_TRUE(folder.mkpath(u"."_s));
    for (int i = 0; i < 10000; ++i) {
        if (i % 4 == 0)
            QFile::link(u".."_s, folder.filePath(u"%1.bundle"_s.arg(i)));
        else
            folder.mkdir(i % 4 == 1 ? u"%1.bundle"_s.arg(i) : QString::number(i));
    }
    services.addFixture(u"Good"_s, services.supportFolder());
    plugins.loadAllPlugins();
    EXPECT_EQ(ids(), QStringList{u"Good"_s});
    EXPECT_EQ(reports.all.size(), 5001) << "half of them links";
}

TEST_F(PluginLoading, LoadsManyInOrderWhileTheNextAreRead)
{
    const QStringList names =
        u"FirstOne Good Hidden NoView NotAPlugin OddHeading ReturnsNil ThrowsInConstructor "
        "UnresolvedSymbol"_s.split(u' ');
    QStringList paths;
    for (const QString &name : names) {
        services.addFixture(name, services.resources());
        paths << own(name + u".bundle"_s);
    }
    QDir().mkpath(own(u"Zero.bundle"_s));
    paths << own(u"Zero.bundle"_s);
    plugins.loadAllPlugins();
    EXPECT_EQ(ids(), names.first(4) + QStringList{u"OddHeading"_s});
    for (const PluginLoadReport &report : reports.all) {
        EXPECT_EQ(report.path, paths.takeFirst());
        EXPECT_TRUE(report.accepted || !report.problems.isEmpty()) << qPrintable(report.path);
    }
    EXPECT_TRUE(paths.isEmpty());
}

TEST_F(PluginLoading, RefusesBrokenAndDamagedBundlesWithAReason)
{
    const QByteArray garbage("\x00\xff<plist", 8);
    const QString module = u"/MacOS/Good.so"_s, info = u"/Info.plist"_s;
    using Damage = std::function<void(const QString &contents)>;
    const auto versions = [&](Versions damage) -> Damage {
        return [&, damage](const QString &c) { damageVersions(c + module, damage); };
    };
    // The result: a bundle that is no plugin at all counts as handled.
    const std::tuple<const char *, Damage, bool, const char *> cases[] = {
        {"ReturnsNil", {}, false, "returned nothing"},
        {"ThrowsInConstructor", {}, false, "constructor of the fixture"},
        {"ThrowsInInitialize", {}, false, "pluginInitialize: of the fixture"},
        {"NotAPlugin", {}, true, "org.example.SomethingElse/1"},
        {"OtherApi", {}, true, "host API 5"},
        {"UnresolvedSymbol", {}, true, "Fixture::symbolThatNobodyHas(char const*)"},
        {"Good", [](auto &c) { QDir(c).removeRecursively(); }, true, "Info.plist"},
        {"Good", [&](auto &c) { QFile::remove(c + info); }, true, "Info.plist"},
        {"Good", [&](auto &c) { makeFile(c + info, garbage); }, true, "Info.plist"},
        {"Good", [&](auto &c) { makeFile(c + info, "{ a = b; }"); }, true, "CFBundleExecutable"},
        {"Good", [&](auto &c) { makeFile(c + info, "{ CFBundleExecutable = \"../x.so\"; }"); },
         true, "CFBundleExecutable"},
        {"Good", [&](auto &c) { QFile::remove(c + module); }, true, "no module"},
        {"Good", [&](auto &c) { makeFile(c + module, {}); }, true, "not a plugin module"},
        {"Good", [&](auto &c) { QFile(c + module).resize(2000); }, true, "not a plugin module"},
        {"Good", versions(Versions::WithoutIndices), true, "table of symbols"},
        {"Good", versions(Versions::Uncounted), true, "table of symbols"},
        {"Good", versions(Versions::WithoutNames), true, "table of symbols"},
        {"Good", versions(Versions::OfAnotherLibrary), true, "table of symbols"},
    };
    for (const auto &[fixture, damage, result, reason] : cases) {
        const QString folder = own(QString::number(reports.all.size()));
        const QString name = QString::fromLatin1(fixture), bundle = folder + u'/' + name;
        services.addFixture(name, folder);
        if (damage)
            damage(bundle + u".bundle/Contents"_s);
        EXPECT_EQ(plugins.loadPluginFromPath(bundle + u".bundle"_s), result) << fixture;
        EXPECT_EQ(plugins.count(), 0U) << fixture;
        const QString problems = reports.all.last().problems.join(u'\n');
        EXPECT_TRUE(problems.contains(QLatin1StringView(reason))) << reason << qPrintable(problems);
    }
    EXPECT_FALSE(plugins.loadPluginFromPath(own(u"nothing.bundle"_s)));
    EXPECT_FALSE(plugins.loadPluginFromPath({}));
}

TEST_F(PluginLoading, SurvivesModulesCutOffAnywhere)
{
    services.addFixture(u"Hidden"_s, services.resources());
    const QByteArray content = fileContent(own(u"Hidden.bundle/Contents/MacOS/Hidden.so"_s));
    ASSERT_FALSE(content.isEmpty());
    for (qsizetype size = 0; size < content.size() / 2; size += 1500) {
        const QString folder = own(QString::number(size));
        services.addFixture(u"Hidden"_s, folder);
        makeFile(folder + u"/Hidden.bundle/Contents/MacOS/Hidden.so"_s, content.first(size));
        plugins.loadPluginFromPath(folder + u"/Hidden.bundle"_s);
    }
    EXPECT_GT(reports.all.size(), 10);
    EXPECT_FALSE(reports.all.first().accepted);
}

TEST_F(PluginLoading, ComposesAMessageOnExceptionsThatNobodySees)
{
    services.addFixture(u"ThrowsInInitialize"_s, services.resources());
    EXPECT_FALSE(plugins.loadPluginFromPath(own(u"ThrowsInInitialize.bundle"_s)));
    EXPECT_EQ(reports.all.last().message,
              u"We encountered an error while initializing a component. "
              "(ThrowsInInitialize.bundle : pluginInitialize: of the fixture)\n\nPlease visit "
              "https://www.solvane.example/support or write to support@solvane.example if the "
              "problem persists.\n\nSolvane will now attempt to continue loading."_s);
    EXPECT_TRUE(
        services.recorder.take().filter(QRegularExpression(u"^(alert|syslog)"_s)).isEmpty());
}

TEST_F(PluginLoading, PutsRowsInRegistryOrderWithTheLastFirstOnTop)
{
    for (const char *name :
         {"FirstOne", "FirstTwo", "Good", "Hidden", "NoHeading", "NoView", "OddHeading"}) {
        services.addFixture(QString::fromLatin1(name), services.resources());
    }
    plugins.loadAllPlugins();
    SidebarTree tree;
    SidebarTree::Headings headings;
    tree.getParentItemNamed(u"Cleaning"_s, headings);
    tree.addPlugins(plugins, headings);

    QStringList shown;
    for (const SourceListItem *heading : headings) {
        QStringList rows;
        for (const SourceListItem *row : heading->children)
            rows << row->title + u'#' + row->identifier;
        shown << u"%1=%2"_s.arg(heading->title, rows.join(u','));
    }
    EXPECT_EQ(shown,
              (QStringList{u"Cleaning=FirstTwo#1,FirstOne#0,Good#2"_s, u"=Homeless#4"_s,
                           u"Oddities=Odd#6"_s}));
    const auto item = [&](quint64 index) {
        return mndPlugins::info(plugins.pluginAtIndex(index)).value<QObject *>(u"__item"_s);
    };
    EXPECT_EQ(item(2), headings[0]->children[2]);
    EXPECT_NE(item(3), nullptr) << "a hidden plugin has an item without a place";
    EXPECT_EQ(item(5), nullptr) << "a plugin without a view has none";
}

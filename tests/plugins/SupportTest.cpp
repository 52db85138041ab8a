#include "FakeCore.h"
#include "helpers/sharedHelpers.h"
#include "plugins/support/BundleVersions.h"
#include "plugins/support/SupportView.h"
#include "support/BinaryPropertyList.h"
#include "support/TestServices.h"

#include <QClipboard>

namespace {

QByteArray infoOf(const QByteArray &name, const QByteArray &version)
{
    return "<plist><dict><key>CFBundleName</key><string>" + name
        + "</string><key>CFBundleVersion</key><string>" + version + "</string></dict></plist>";
}

/// A hundred bytes whose version can be read, and whose name stands for a million values.
QByteArray bomb()
{
    QList<QByteArray> objects{"\xd2" + references(1, 4),
                              "\x5c"
                              "CFBundleName",
                              "\x5f\x10\x0f"
                              "CFBundleVersion",
                              "\xa1" + references(5, 1), "\x51\x36"};
    for (int i = 6; i < 26; ++i)
        objects << "\xa2" + references(i, 1).repeated(2);
    return binary(objects << "\x09");
}

/// A folder of the program's bundles and a home with a bundle that was added.
struct Bundles
{
    QTemporaryDir folder;
    QString own = folder.filePath(u"app"_s);
    QString added = folder.filePath(u"home/Library/Application Support/Solvane"_s);

    Bundles()
    {
        const std::pair<QString, QByteArray> bundles[] = {
            {own + u"/Status.bundle"_s, infoOf("Status", "600")},
            {own + u"/network.bundle"_s,
             binary({"\xd2" + references(1, 4),
                     "\x5c"
                     "CFBundleName",
                     "\x5f\x10\x0f"
                     "CFBundleVersion",
                     QByteArray("\x6a\0N\0e\0t\0z\0w\0e\0r\0k\0 \0\xfc", 21), "\x51\x37"})},
            {own + u"/Bomb.bundle"_s, bomb()},
            {own + u"/Text.bundle"_s, "CFBundleVersion = 5;"},
            {own + u"/Broken.bundle"_s, "<plist><dict><key>"},
            {own + u"/Number.bundle"_s,
             "<plist><dict><key>CFBundleVersion</key><integer>3</integer></dict></plist>"},
            {own + u"/Huge.bundle"_s, infoOf("Huge", "1") + QByteArray(33 << 20, ' ')},
            {own + u"/Folder.bundle/Contents/Info.plist"_s, ""},
            {own + u"/Other.app"_s, infoOf("Other", "1")},
            {added + u"/Extra.bundle"_s, infoOf("&lt;b>Extra&lt;/b>", "1.2")},
        };
        for (const auto &[path, info] : bundles)
            makeFile(path + u"/Contents/Info.plist"_s, info);
    }
};

} // namespace

/// The first part of the view of which that holds.
template <typename Part, typename Condition>
Part *find(const QWidget &view, const Condition &holds)
{
    const auto parts = view.findChildren<Part *>();
    const auto found = std::find_if(parts.begin(), parts.end(), holds);
    EXPECT_NE(found, parts.end());
    return found == parts.end() ? nullptr : *found;
}

struct Browser : QObject, mndWorkspace
{
    Q_OBJECT
    Q_INTERFACES(mndWorkspace)
public:
    QStringList opened;
    std::function<void()> failed;
    bool openUrl(const QString &url, const std::function<void()> &onFailure) override
    {
        opened << url;
        failed = onFailure;
        return true;
    }
    bool openFile(const QString &, const std::function<void()> &) override { return false; }
};

struct Reports : QObject, mndLoadReports
{
    Q_OBJECT
    Q_INTERFACES(mndLoadReports)
public:
    QList<Report> reports;
    QList<Report> notLoaded() override { return reports; }
};

TEST(BundleVersions, ReadWhatCanBeRead)
{
    const Bundles bundles;
    QStringList read;
    appBundle reader;
    for (const BundleVersion &bundle : readBundleVersions(&reader, bundles.own, bundles.added))
        read << bundle.name + u'=' + bundle.version + (bundle.added ? u" added"_s : QString());
    EXPECT_EQ(read.join(u'|'),
              u"Bomb=|Broken=|Folder=|Huge=|Netzwerk \u00fc=7|Number=|Status=600|Text=5|"
              "<b>Extra</b>=1.2 added"_s);
    EXPECT_EQ(readBundleVersions(nullptr, bundles.own, bundles.own).size(), 8U)
        << "one folder, listed once";
    EXPECT_TRUE(readBundleVersions(&reader, u"/no such place"_s, QString()).empty());
}

TEST(SupportView, CopiesTheVersions)
{
    const Bundles bundles;
    FakeCore core;
    core.home = bundles.folder.filePath(u"home"_s);
    SupportView view(&core, bundles.own + u"/Support.bundle"_s);
    view.refresh();
    ASSERT_SOON(view.versionsText().contains(u"Extra"_s));
    find<QPushButton>(view, [](auto *button) {
        return button->accessibleName() == u"[Copy the versions]"_s;
    })->click();
    EXPECT_EQ(
        QGuiApplication::clipboard()->text(),
        u"[Solvane]: v612, [Web edition]\nQt: %1\nBomb: \u2013\nBroken: \u2013\nFolder: \u2013\n"
        "Huge: \u2013\nNetzwerk \u00fc: 7\nNumber: \u2013\nStatus: 600\nText: 5\n"
        "[<b>Extra</b> (added)]: 1.2\n"_s.arg(QString::fromLatin1(qVersion())));
    const QLabel *said =
        find<QLabel>(view, [](auto *label) { return label->text() == u"[Copied]"_s; });
    EXPECT_SOON(said->text() != u"[Copied]"_s) << "only briefly";
}

TEST(SupportView, LeadsToTheHelpPageAndToFeedback)
{
    FakeCore core;
    Browser browser;
    core.workspace = &browser;
    SupportView view(&core, u"/nowhere/Support.bundle"_s);
    find<QPushButton>(view, [](auto *button) {
        return button->text().contains(u"feedback"_s);
    })->click();
    EXPECT_EQ(core.feedbacks, 1);
    auto *link =
        find<QLabel>(view, [](auto *label) { return label->text().contains(u"https:"_s); });
    EXPECT_NE(link->focusPolicy(), Qt::NoFocus);
    ASSERT_TRUE(activate(view));
    link->setFocus();
    QTest::keyClick(link, Qt::Key_Tab); // onto the link in the text
    QTest::keyClick(link, Qt::Key_Return);
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(link);
    EXPECT_EQ(spoken->role(), QAccessible::Link);
    spoken->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    const QString page = u"https://www.solvane.example/support?de"_s;
    EXPECT_EQ(browser.opened, (QStringList{page, page}));
    const auto *said = find<QLabel>(
        view, [](auto *label) { return label->text().startsWith(u"[The browser could not"_s); });
    EXPECT_TRUE(said->isHidden());
    browser.failed();
    EXPECT_FALSE(said->isHidden());
    for (auto text = core.texts.cbegin(); text != core.texts.cend(); ++text)
        EXPECT_TRUE(text.key().startsWith(u"SZ_SUPPORT_"_s) || text.key() == u"SZ_TITLE"_s
                    || text.key().startsWith(u"SZ_EXTENDED_LOGGING"_s));
}

TEST(SupportView, NamesWhatWasNotLoaded)
{
    FakeCore core;
    Reports reports;
    core.reports = &reports;
    SupportView view(&core, u"/nowhere/Support.bundle"_s);
    const auto named = [&view] {
        QStringList names;
        for (const auto *label : view.findChildren<QLabel *>())
            names << label->accessibleName();
        return names.filter(u": ["_s).join(u'|');
    };
    view.refresh();
    EXPECT_EQ(named(), u""_s);
    reports.reports = {{u"/a/<b>One.bundle"_s, mndLoadReports::Refused, u"for host API 7"_s},
                       {u"/a/Two.bundle"_s, mndLoadReports::LeftOutOfThisRun, u"as asked"_s},
                       {u"/a/Three.bundle"_s, mndLoadReports::LeftOutAfterCrash, {}}};
    view.refresh();
    view.refresh();
    EXPECT_EQ(named(),
              u"<b>One: [Refused: for host API 7]|Two: [Left out of this run]|"
              "Three: [Left out, because Solvane did not end as it should] "
              "([Help] \u203a [Left-out plugins])"_s);
}

TEST(SupportView, ShowsWhatFeedbackSendsBeforeItDoes)
{
    const TestServices services;
    sharedHelpers helpers;
    FakeCore core;
    core.osVersion = u"System 1 (x)"_s;
    SupportView view(&core, u"/nowhere/Support.bundle"_s);
    auto *toggle = find<QLabel>(view, [](auto *label) {
        return label->accessibleName() == u"[Show or hide what is sent]"_s;
    });
    const auto shown = [&] {
        QStringList values;
        for (const auto *label : view.findChildren<QLabel *>()) {
            if (label->textInteractionFlags() == Qt::TextSelectableByMouse)
                values << label->text();
        }
        return values;
    };
    EXPECT_EQ(shown(), QStringList());
    core.helpers = &helpers;
    EXPECT_TRUE(SupportView(&core, u"/nowhere/Support.bundle"_s)
                    .versionsText()
                    .contains(u"[Anonymous identifier]: "_s + helpers.anonymousUUID() + u'\n'));
    Q_EMIT toggle->linkActivated(u"#"_s);
    EXPECT_TRUE(shown().join(u'|').startsWith(
        helpers.anonymousUUID()
        + u"|en|v612|WWW|PRO|4@0|0|0bytes:0bytes|MakerModel|System 1 (x)|file:///"_s));
    EXPECT_EQ(shown().size(), 11);
    EXPECT_EQ(core.feedbacks, 0);
    Q_EMIT toggle->linkActivated(u"#"_s);
    EXPECT_EQ(shown(), QStringList());
}

#include "SupportTest.moc"

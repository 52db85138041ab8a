#include "helpers/appBundle.h"

#include "support/BinaryPropertyList.h"
#include "support/TestServices.h"

namespace {

struct AppBundle : testing::Test
{
    void write(const QByteArray &manifest)
    {
        TestServices::write(path + u"/Contents/Info.plist"_s, manifest);
    }
    /// All seven answers in the order of the interface, without the bundle's own path.
    QString answers(const QString &bundle)
    {
        QStringList all{app.getManifestPath(bundle), app.getIconPath(bundle),
                        app.getAppName(bundle),      app.getExecutablePath(bundle),
                        app.getInfoString(bundle),   app.getBundleID(bundle),
                        app.getShortVersion(bundle)};
        for (const QString &answer : all)
            EXPECT_FALSE(answer.isNull());
        return all.join(u'|').replace(path, u"$"_s);
    }

    QTemporaryDir root;
    QString path = root.filePath(u"The X.app"_s);
    appBundle app;
};

} // namespace

TEST_F(AppBundle, AnswersFromEveryFormOfManifest)
{
    const QByteArray text = "{ CFBundleIconFile = AppIcon; SKAppName = \"The Name\"; "
                            "CFBundleExecutable = run; CFBundleGetInfoString = \"\\U00e4\"; "
                            "CFBundleIdentifier = a.b; CFBundleShortVersionString = \"1.2\"; }";
    const QByteArray xml =
        "<plist version=\"1.0\"><dict><key>CFBundleIconFile</key><string>AppIcon</string>"
        "<key>SKAppName</key><string>The Name</string><key>CFBundleExecutable</key>"
        "<string>run</string><key>CFBundleGetInfoString</key><string>\xc3\xa4</string>"
        "<key>CFBundleIdentifier</key><string>a.b</string>"
        "<key>CFBundleShortVersionString</key><string>1.2</string></dict></plist>";
    for (const QByteArray &manifest : {text, xml, asBinary(xml)}) {
        write(manifest);
        EXPECT_EQ(answers(path),
                  u"$/Contents/Info.plist|$/Contents/Resources/AppIcon.icns|The Name|"
                  "$/Contents/MacOS/run|ä|a.b|1.2"_s);
    }
    for (const char *way : {"/", "//", "/.", "/Contents/.."}) {
        const QString icon = app.getIconPath(path + QString::fromLatin1(way));
        EXPECT_EQ(QDir::cleanPath(icon), path + u"/Contents/Resources/AppIcon.icns"_s);
    }
}

TEST_F(AppBundle, FallsBackWhereAValueIsMissing)
{
    const std::tuple<QByteArray, const char16_t *, const char16_t *, const char16_t *> cases[] = {
        {"{ CFBundleIconFile = \"A.ICNS\"; }", u"$/Contents/Resources/A.ICNS", u"",
         u"$/Contents/MacOS/The X"},
        {"{ CFBundleIconFile = \"A.v2\"; CFBundleExecutable = e; }",
         u"$/Contents/Resources/A.v2.icns", u"e", u"$/Contents/MacOS/e"},
        {"{ CFBundleIconFile = (A); SKAppName = <00>; CFBundleExecutable = (e); }", u"", u"", u"$"},
        {"{ CFBundleIconFile = \"\"; CFBundleExecutable = \"\"; }", u"$/Contents/Resources/.icns",
         u"", u"$/Contents/MacOS/"},
        {"{}", u"", u"", u"$/Contents/MacOS/The X"},
        {"(a, b)", u"", u"", u""},
        {"{ broken", u"", u"", u""},
        {QByteArray(100'000, '(') + QByteArray(100'000, ')'), u"", u"", u""},
        {"{ a = " + QByteArray(40'000'000, 'x') + "; }", u"", u"", u""},
    };
    for (const auto &[manifest, icon, name, executable] : cases) {
        SCOPED_TRACE(manifest.left(40).constData());
        write(manifest);
        EXPECT_EQ(answers(path),
                  QStringList({u"$/Contents/Info.plist"_s, QString::fromUtf16(icon),
                               QString::fromUtf16(name), QString::fromUtf16(executable)})
                          .join(u'|')
                      + u"|||"_s);
    }
    EXPECT_EQ(answers(u"/missing/Y.app"_s), u"/missing/Y.app/Contents/Info.plist||||||"_s);
    EXPECT_EQ(answers(QString()), u"||||||"_s);
    write("{}");
    for (const char *way : {"/", "/."})
        EXPECT_TRUE(app.getExecutablePath(path + QString::fromLatin1(way)).endsWith(u"/The X"_s))
            << way;
}

TEST_F(AppBundle, FindsTheApplicationAProgramLiesIn)
{
    const std::tuple<const char *, const char *> cases[] = {
        {"/Applications/X.app/Contents/MacOS/X", "/Applications/X.app"},
        {"/A/X.app", "/A/X.app"},
        {"/A//X.app//Y.app/", "/A/X.app"},
        {"A/X.app/b", "/A/X.app"},
        {"X.app", "/X.app"},
        {"/Users/a/Tool", ""},
        {"/A/X.APP/b", ""},
        {"/A/.app/b", ""},
        {"/A/Xapp/b", ""},
        {"/", ""},
        {"", ""},
    };
    for (const auto &[executable, application] : cases)
        EXPECT_EQ(app.getAppPathFromExecutablePath(QString::fromLatin1(executable)).toStdString(),
                  application)
            << executable;
}

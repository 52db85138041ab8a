#include "helpers/appBundle.h"

#include "support/TestServices.h"

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

TEST_F(AppBundle, AnswersFromTheManifest)
{
    write("{ CFBundleIconFile = AppIcon; SKAppName = \"The Name\"; CFBundleExecutable = run; "
          "CFBundleGetInfoString = \"\\U00e4\"; CFBundleIdentifier = a.b; "
          "CFBundleShortVersionString = \"1.2\"; }");
    EXPECT_EQ(answers(path),
              u"$/Contents/Info.plist|$/Contents/Resources/AppIcon.icns|The Name|"
              "$/Contents/MacOS/run|ä|a.b|1.2"_s);
    for (const char *way : {"/", "//", "/.", "/Contents/.."}) {
        const QString icon = app.getIconPath(path + QString::fromLatin1(way));
        EXPECT_EQ(QDir::cleanPath(icon), path + u"/Contents/Resources/AppIcon.icns"_s);
    }
}

TEST_F(AppBundle, FallsBackWhereAValueIsMissing)
{
    // Icon, name and executable.
    const std::pair<QByteArray, const char *> cases[] = {
        {"{ CFBundleIconFile = \"A.ICNS\"; }",
         "$/Contents/Resources/A.ICNS||$/Contents/MacOS/The X"},
        {"{ CFBundleIconFile = \"A.v2\"; CFBundleExecutable = e; }",
         "$/Contents/Resources/A.v2.icns|e|$/Contents/MacOS/e"},
        {"{ CFBundleIconFile = (A); SKAppName = <00>; CFBundleExecutable = (e); }", "||$"},
        {"{ CFBundleIconFile = \"\"; CFBundleExecutable = \"\"; }",
         "$/Contents/Resources/.icns||$/Contents/MacOS/"},
        {"{}", "||$/Contents/MacOS/The X"},
        {"(a, b)", "||"},
        {"{ broken", "||"},
        {QByteArray(100'000, '(') + QByteArray(100'000, ')'), "||"},
        {"{ a = " + QByteArray(40'000'000, 'x') + "; }", "||"},
    };
    for (const auto &[manifest, found] : cases) {
        SCOPED_TRACE(manifest.left(40).constData());
        write(manifest);
        EXPECT_EQ(answers(path), u"$/Contents/Info.plist|"_s + QString::fromUtf8(found) + u"|||"_s);
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

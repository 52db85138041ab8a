#include "platform/foundation/Bundle.h"

struct BundleTest : testing::Test
{
    QTemporaryDir m_folder;
    const QString m_path = m_folder.path() + u"/Test.bundle"_s;

    void write(const QString &name, const QByteArray &content)
    {
        makeFile(m_path + u"/Contents/"_s + name, content);
    }
};

TEST_F(BundleTest, OpensFoldersOnly)
{
    write(u"Info.plist"_s, "{}");
    EXPECT_EQ(Bundle::open(m_path + u"/Contents/../"_s).value()->path(), m_path);
    for (const QString &path : {m_path + u"/Contents/Info.plist"_s, m_path + u"x"_s, QString()}) {
        EXPECT_FALSE(Bundle::open(path).ok());
        EXPECT_FALSE(Bundle::open(path).error().isEmpty());
    }
}

TEST_F(BundleTest, ReadsItsInformationOnceOrSaysWhyNot)
{
    EXPECT_TRUE(Bundle(m_path).infoProblem().contains(u"Info.plist"_s));
    for (const char *content : {"{ a = ; }", "(a, b)", ""}) {
        write(u"Info.plist"_s, content);
        const Bundle broken(m_path);
        EXPECT_TRUE(broken.infoDictionary().isEmpty()) << content;
        EXPECT_FALSE(broken.infoProblem().isEmpty()) << content;
    }
    write(u"Info.plist"_s, "{ CFBundleExecutable = x.so; CFBundleVersion = 600; }");
    const Bundle bundle(m_path);
    EXPECT_EQ(bundle.infoValue(u"CFBundleVersion"_s), u"600"_s);
    EXPECT_EQ(bundle.executablePath(), m_path + u"/Contents/MacOS/x.so"_s);
    EXPECT_TRUE(bundle.infoProblem().isNull());
    write(u"Info.plist"_s, "{}");
    EXPECT_EQ(bundle.infoDictionary().size(), 2);
    for (const char *name :
         {"\"\"", "\"..\"", "\".\"", "\"../x\"", "\"/bin/sh\"", "\"a\\000b\"", "(a)"}) {
        write(u"Info.plist"_s, QByteArray("{ CFBundleExecutable = ") + name + "; }");
        EXPECT_TRUE(Bundle(m_path).executablePath().isNull()) << name;
    }
}

TEST_F(BundleTest, FindsResourcesInsideOnly)
{
    for (const QString &name : {u"Resources/en.strings"_s, u"Resources/plain"_s,
                                u"Resources/Sub.bundle/x"_s, u"outside.strings"_s})
        write(name, "");
    const Bundle bundle(m_path);
    const QString resources = m_path + u"/Contents/Resources/"_s;
    const std::tuple<QString, QString, QString> cases[] = {
        {u"en"_s, u"strings"_s, resources + u"en.strings"_s},
        {u"plain"_s, {}, resources + u"plain"_s},
        {u"Sub"_s, u"bundle"_s, resources + u"Sub.bundle"_s},
        {u"EN"_s, u"strings"_s, {}},
        {u"en.strings"_s, u"strings"_s, {}},
        {u"../outside"_s, u"strings"_s, {}},
        {u"Sub.bundle/x"_s, {}, {}},
        {u"."_s, {}, {}},
        {u".."_s, {}, {}},
        {u""_s, u"strings"_s, {}},
        {u"en"_s, u"strings/../plain"_s, {}},
        {u"plain\0x"_s, {}, {}},
    };
    for (const auto &[name, type, found] : cases)
        EXPECT_EQ(bundle.pathForResource(name, type), found) << name.toStdString();
}

TEST_F(BundleTest, ListsResourcesInByteOrder)
{
    for (const QString &name : {u"b"_s, u"a"_s, u"B"_s, u"é"_s, u".hidden"_s})
        write(u"Resources/"_s + name + u".bundle/x"_s, "");
    write(u"Resources/c.bundled"_s, "");
    write(u"Resources/sub/deep.bundle"_s, "");
    QStringList names = Bundle(m_path).pathsForResources(u"bundle"_s);
    for (QString &name : names)
        name = QFileInfo(name).completeBaseName();
    EXPECT_EQ(names, QStringList({u"B"_s, u"a"_s, u"b"_s, u"é"_s}));
    EXPECT_TRUE(Bundle(m_path + u"x"_s).pathsForResources(u"bundle"_s).isEmpty());
}

#include "platform/ui/FileIcons.h"

#include "platform/foundation/FilePath.h"
#include "platform/foundation/TreeRemoval.h"
#include "platform/ui/IconImage.h"
#include "support/TestServices.h"

#include <QIcon>

static QByteArray drawing(const QByteArray &color, const QByteArray &size = "10")
{
    return "<svg xmlns='http://www.w3.org/2000/svg' width='" + size + "' height='" + size
        + "' viewBox='0 0 10 10'><rect width='10' height='10' fill='" + color + "'/></svg>";
}

struct FileIconsTest : testing::Test
{
    FileIconsTest()
    {
        services.addResource(u"icon-document.svg"_s, drawing("#111111"));
        services.addResource(u"icon-folder.svg"_s, drawing("#222222"));
        services.addResource(u"icon-application.svg"_s, drawing("#333333"));
        write(u"themes/test/index.theme"_s,
              "[Icon Theme]\nName=test\nDirectories=16\n[16]\nSize=16\n");
        write(u"themes/test/16/video-x-generic.svg"_s, drawing("#444444"));
        write(u"themes/test/16/named.svg"_s, drawing("#555555"));
        QIcon::setThemeSearchPaths({services.home.filePath(u"themes"_s)});
        QIcon::setThemeName(u"test"_s);
    }
    QString write(const QString &name, const QByteArray &content) const
    {
        return TestServices::write(services.home.path() + u'/' + name, content);
    }
    /// What is in the middle, as "#rrggbb"; empty for a null image and for one of another size.
    static QString middle(const QImage &icon, int size = 16)
    {
        return icon.deviceIndependentSize() == QSizeF(size, size)
            ? icon.pixelColor(icon.rect().center()).name()
            : QString();
    }

    TestServices services;
};

TEST_F(FileIconsTest, ShowWhatAnItemIs)
{
    const QString icon = write(u"an icon.svg"_s, drawing("#666666"));
    write(u"X.app/Contents/Info.plist"_s, "{ CFBundleIconFile = Icon; }");
    ASSERT_TRUE(QImage(20, 20, QImage::Format_RGB32).save(services.home.filePath(u"i.icns"_s)));
    QFile::copy(icon, services.home.filePath(u"drawing.txt"_s));
    QDir().mkpath(services.home.filePath(u"X.app/Contents/Resources"_s));
    ASSERT_TRUE(filled(128, 128, u"#777777"_s)
                    .save(services.home.filePath(u"X.app/Contents/Resources/Icon.icns"_s)));
    write(u"Bad.app/Contents/Info.plist"_s, "{ CFBundleIconFile = \"../Icon\"; }");
    write(u"named.desktop"_s, "[Desktop Entry]\nIcon=named.png\n");
    write(u"file.desktop"_s, "[Desktop Entry]\nIcon=" + icon.toUtf8() + '\n');
    write(u"a.mp4"_s, "");
    const QString latin = services.home.path() + u'/' + FilePath::decode("\xe4");
    TestServices::write(latin + u".mp4"_s, "x");
    ASSERT_EQ(::mkdir(FilePath::encode(latin).constData(), 0700), 0);
    EXPECT_EQ(middle(FileIcons::ofFile(latin + u".mp4"_s, 16)), u"#444444"_s);
    EXPECT_EQ(middle(FileIcons::ofFile(latin, 16)), u"#222222"_s);
    removeTree(latin + u".mp4"_s), removeTree(latin);
    write(u"script"_s, QByteArray("\177ELF\2\1\1\0\0\0\0\0\0\0\0\0\2\0\76\0", 20));
    makePipe(services.home.filePath(u"pipe"_s));
    const std::pair<const char *, const char *> cases[] = {
        {"X.app", "#777777"},   {"X.app/", "#777777"},        {"Bad.app", "#333333"},
        {"", "#222222"},        {"named.desktop", "#555555"}, {"file.desktop", "#666666"},
        {"a.mp4", "#444444"},   {"missing.mp4", "#444444"},   {"drawing.txt", "#111111"},
        {"script", "#333333"},  {"pipe", "#111111"},          {"missing.app", "#333333"},
        {"missing", "#111111"},
    };
    for (const auto &[name, color] : cases) {
        const QString path = services.home.path() + u'/' + QString::fromLatin1(name);
        EXPECT_EQ(middle(FileIcons::ofFile(path, 16), 16).toStdString(), color) << name;
    }
    for (const auto &[type, color] : {std::pair{"APPL", "#333333"},
                                      {"mp4", "#444444"},
                                      {".mp4", "#444444"},
                                      {"video/mp4", "#444444"},
                                      {"inode/directory", "#222222"},
                                      {"no/such", "#111111"},
                                      {"", "#111111"}}) {
        EXPECT_EQ(middle(FileIcons::ofType(QString::fromLatin1(type), 16)).toStdString(), color)
            << type;
    }
    for (const int size : {0, -1, INT_MIN})
        EXPECT_TRUE(FileIcons::ofFile(icon, size).isNull());
    EXPECT_EQ(middle(FileIcons::ofFile(u"/"_s, INT_MAX), 1024), u"#222222"_s);

    QString elsewhere;
    onThread([&] { elsewhere = middle(FileIcons::ofFile(u"a.mp4"_s, 16)); });
    EXPECT_EQ(elsewhere, u"#444444"_s);
}

TEST_F(FileIconsTest, AreReadFromSaneFilesOnly)
{
    const QString path = services.home.filePath(u"wide.png"_s);
    ASSERT_TRUE(filled(40, 10, Qt::red).save(path));
    const QImage icon = IconImage::read(path, 16);
    EXPECT_EQ(middle(icon), u"#ff0000"_s);
    EXPECT_EQ(icon.pixelColor(16, 2).alpha(), 0) << "undistorted";
    EXPECT_EQ(middle(IconImage::read(write(u"a.svg"_s, drawing("#123456", "900000000")), 16)),
              u"#123456"_s);

    // A picture that says it is larger than it has data for: PBM has a header of plain text.
    const QByteArray bomb = "P6\n65535 65535\n255\n";
    const QByteArray packed = "\x1f\x8b" + QByteArray(100'000, '\0');
    for (const QByteArray &content : {QByteArray("no image"), QByteArray(), bomb, packed})
        EXPECT_TRUE(IconImage::read(write(u"bad"_s, content), 16).isNull());
    makePipe(services.home.filePath(u"pipe"_s));
    for (const QString &name : {u"pipe"_s, u""_s, u"missing"_s})
        EXPECT_TRUE(IconImage::read(services.home.filePath(name), 16).isNull());
}

TEST(BuiltInIcons, AreThere)
{
    for (const char *name : {"document", "folder", "application"}) {
        const QString path = SOLVANE_IMAGES_DIR u"/icon-%1.svg"_s.arg(QString::fromLatin1(name));
        const QImage icon = IconImage::read(path, 32);
        ASSERT_FALSE(icon.isNull()) << name;
        EXPECT_EQ(icon.pixelColor(icon.rect().center()).alpha(), 255) << name;
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << name;
    }
}

#include "helpers/sharedHelpers.h"
#include "platform/ui/TableView.h"
#include "support/TestServices.h"

TEST(Icons, OfAnApplicationLieInItsBundle)
{
    QTemporaryDir root;
    const QString app = root.filePath(u"X.app"_s);
    TestServices::write(app + u"/Contents/Info.plist"_s, "{ CFBundleIconFile = I; }");
    sharedHelpers helpers;
    const QString icon = app + u"/Contents/Resources/I.icns"_s;
    EXPECT_EQ(helpers.iconPathForApplication(app), icon);
    EXPECT_EQ(helpers.iconPathForApplication(app + u"/Contents/MacOS/X"_s), icon);
    EXPECT_EQ(helpers.iconPathForApplication(u"/no/Y.app"_s), u""_s);
    EXPECT_FALSE(helpers.iconPathForApplication(u"/no/Y.app"_s).isNull());
    for (const QString &path : {u"/usr/bin/tool"_s, u""_s, QString()})
        EXPECT_TRUE(helpers.iconPathForApplication(path).isNull());
}

TEST(Icons, StandOnTheRightOfATablesCell)
{
    TestServices services;
    services.icon = filled(32, 32, Qt::blue);
    const QString path = services.home.filePath(u"red.png"_s);
    ASSERT_TRUE(filled(8, 8, Qt::red).save(path));
    sharedHelpers helpers;
    for (const auto &[cell, color, noted] :
         {std::tuple{helpers.tableViewIconForFile(path, 16), u"#ff0000"_s, QString()},
          {helpers.tableViewIconForFile(QString(), 16), u"#0000ff"_s, u"icon of type APPL, 16"_s},
          {helpers.tableViewIconForFile(u""_s, 16), u"#0000ff"_s, u"icon of type APPL, 16"_s},
          {helpers.tableViewIconForBundle(u"/x"_s, 16), u"#0000ff"_s, u"icon of file /x, 16"_s}}) {
        EXPECT_EQ(cell.attachment.pixelColor(16, 16).name(), color);
        EXPECT_EQ(cell.alignment, Qt::AlignRight);
        EXPECT_TRUE(cell.text.isEmpty());
        EXPECT_EQ(services.recorder.events.contains(noted), !noted.isNull());
    }
    for (const int size : {16, 40})
        EXPECT_EQ(helpers.tableViewIconForFile(path, size).attachment.deviceIndependentSize(),
                  QSizeF(size, size));
    const AttributedString none = helpers.tableViewIconForFile(u"/no/image"_s, 16);
    EXPECT_TRUE(none.attachment.isNull());
    EXPECT_EQ(none.alignment, Qt::AlignRight);
}

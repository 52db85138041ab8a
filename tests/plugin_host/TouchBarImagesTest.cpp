#include "plugin_host/TouchBarImages.h"
#include "support/TestServices.h"

/// Left half red, a quarter half-transparent blue, a quarter empty; two pixels to a point.
static QImage sample()
{
    QImage image = filled(8, 4, Qt::transparent);
    for (int i = 0; i < 6 * 4; ++i)
        image.setPixelColor(i % 6, i / 6, i % 6 < 4 ? QColor(Qt::red) : QColor(0, 0, 255, 128));
    image.setDevicePixelRatio(2);
    return image;
}

const QPoint onRed(1, 1), onBlue(5, 1), onNothing(7, 1);

TEST(TouchBarImages, TintOnlyWhatIsThere)
{
    const QImage white = TouchBarImages::tinted(sample(), 1.0F);
    EXPECT_EQ(white.deviceIndependentSize(), QSizeF(4, 2));
    EXPECT_EQ(white.pixelColor(onRed), QColor(Qt::white));
    EXPECT_EQ(white.pixelColor(onBlue), QColor(255, 255, 255, 128));
    EXPECT_EQ(white.pixelColor(onNothing).alpha(), 0);
    const QColor mixed = TouchBarImages::tinted(sample(), 0.9F).pixelColor(onRed);
    EXPECT_EQ(mixed.red(), 255);
    EXPECT_NEAR(mixed.green(), 229.5, 1);
    EXPECT_TRUE(TouchBarImages::tinted({}, 1.0F).isNull());
}

TEST(TouchBarImages, ResizeToPoints)
{
    TestServices services;
    const QImage large = TouchBarImages::resized(sample(), {16, 16});
    EXPECT_EQ(large.deviceIndependentSize(), QSizeF(16, 16)) << "stretched";
    EXPECT_EQ(large.size(), QSize(32, 32));
    EXPECT_EQ(large.pixelColor(8, 16), QColor(Qt::red));
    EXPECT_EQ(large.pixelColor(31, 16).alpha(), 0);
    const QImage coarse = filled(40, 40, Qt::green);
    EXPECT_EQ(TouchBarImages::resized(coarse, {18, 18}).size(), QSize(36, 36));
    EXPECT_TRUE(TouchBarImages::resized(coarse, {0, 18}).isNull());
    EXPECT_TRUE(services.recorder.take().isEmpty());
    EXPECT_TRUE(TouchBarImages::resized({}, {18, 18}).isNull());
    EXPECT_EQ(services.recorder.take(), QStringList{u"syslog Invalid Image"_s});
}

TEST(TouchBarImages, GreyKeepsTheTransparency)
{
    const QImage grey = TouchBarImages::grey(sample());
    const QColor red = grey.pixelColor(onRed);
    EXPECT_EQ(red.red(), red.blue());
    EXPECT_NEAR(red.red(), 0.3 * 255, 12);
    EXPECT_EQ(grey.pixelColor(onBlue).alpha(), 128);
    EXPECT_EQ(grey.pixelColor(onNothing).alpha(), 0);
    EXPECT_EQ(grey.devicePixelRatio(), 2);

    const QImage bitmap = TouchBarImages::bitmap(sample());
    EXPECT_EQ(bitmap.deviceIndependentSize(), QSizeF(8, 4));
    const QImage image = TouchBarImages::imageFromBitmap(bitmap);
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(8, 4));
    for (const QPoint &pixel : {onRed, onBlue, onNothing})
        EXPECT_EQ(image.pixelColor(pixel).alpha(), sample().pixelColor(pixel).alpha());
    for (const auto &convert :
         {TouchBarImages::grey, TouchBarImages::bitmap, TouchBarImages::imageFromBitmap})
        EXPECT_TRUE(convert({}).isNull());
}

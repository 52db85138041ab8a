#include "platform/ui/WindowFrameMemory.h"
#include "tests/support/TestServices.h"

TEST(WindowFrameMemory, BringsAWindowBackToItsPlace)
{
    TestServices services;
    const QString key = u"place"_s;
    const QRect place(60, 70, 320, 240);
    {
        QWidget window;
        new WindowFrameMemory(&window, key);
        window.setAttribute(Qt::WA_DontShowOnScreen);
        window.show();
        window.hide();
        EXPECT_TRUE(services.defaults.isEmpty()) << "nobody has seen it";
        window.setAttribute(Qt::WA_DontShowOnScreen, false);
        window.setGeometry(place);
        window.show();
        EXPECT_TRUE(services.defaults.isEmpty());
        window.hide();
        EXPECT_TRUE(services.defaults.contains(key));
    }
    QWidget window;
    new WindowFrameMemory(&window, key);
    EXPECT_EQ(window.geometry(), place);
    window.show();
    services.recorder.take();
    window.hide();
    EXPECT_EQ(services.recorder.take(), QStringList()) << "stored as it is already";
    window.show();
    window.resize(400, 300);
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    services.defaults[u"again"_s] = services.defaults[key];
    QWidget next;
    new WindowFrameMemory(&next, u"again"_s);
    EXPECT_EQ(next.size(), QSize(400, 300));

    services.defaults[key] = u"no geometry"_s;
    QWidget fresh;
    fresh.resize(200, 100);
    new WindowFrameMemory(&fresh, key);
    EXPECT_EQ(fresh.size(), QSize(200, 100));
}

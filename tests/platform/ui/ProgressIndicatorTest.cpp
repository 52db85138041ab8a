#include "platform/ui/ProgressIndicator.h"
#include "tests/support/MotionStyle.h"

TEST(ProgressIndicator, TurnsOnlyWhileItIsSeen)
{
    MotionStyle style;
    style.duration = 200;
    QWidget window;
    auto *spinner = new ProgressIndicator(&window);
    spinner->setStyle(&style);
    window.show();
    EXPECT_FALSE(spinner->isTurning());
    const std::pair<std::function<void()>, bool> steps[] = {
        {[&] { spinner->startAnimation(); }, true},
        {[&] { spinner->hide(); }, false},
        {[&] { spinner->show(); }, true},
        {[&] { window.setWindowState(Qt::WindowMinimized); }, false},
        {[&] { window.setWindowState(Qt::WindowNoState); }, true},
        {[&] { window.hide(); }, false},
        {[&] { window.show(), spinner->stopAnimation(); }, false},
        {[&] { style.duration = 0, spinner->startAnimation(); }, false},
    };
    int step = 0;
    for (const auto &[act, turns] : steps) {
        SCOPED_TRACE(++step);
        act();
        QCoreApplication::processEvents();
        EXPECT_EQ(spinner->isTurning(), turns);
    }
    EXPECT_TRUE(spinner->isAnimating());
}

TEST(ProgressIndicator, DrawsSmallAndInTheMiddle)
{
    for (const QSize size : {QSize(17, 17), QSize(60, 40), QSize(8, 8)}) {
        ProgressIndicator spinner;
        spinner.resize(size);
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        spinner.render(&image, {}, {}, {});
        QRect drawn;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                if (image.pixelColor(x, y).alpha() > 0)
                    drawn |= QRect(x, y, 1, 1);
            }
        }
        const int expected = std::min({16, size.width(), size.height()});
        EXPECT_NEAR(drawn.width(), expected, 2);
        EXPECT_NEAR(drawn.height(), expected, 2);
        EXPECT_LE((drawn.center() - image.rect().center()).manhattanLength(), 1);
    }
}

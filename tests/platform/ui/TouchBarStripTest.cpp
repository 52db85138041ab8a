#include "platform/ui/TouchBarStrip.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/HostLook.h"
#include "platform/ui/MainWindow.h"
#include "platform/ui/ProgressIndicator.h"
#include "platform/ui/SegmentedControl.h"

#include <QStyle>

namespace {

/// Makes a control of texts for every identifier but "none"; "a b" has two segments.
class Maker : public QObject, public TouchBarDelegate
{
    Q_OBJECT
    Q_INTERFACES(TouchBarDelegate)

public:
    const Selector tap{u"tapped:"_s};
    std::function<void()> whenTapped;
    int selected = -1;

    std::unique_ptr<TouchBarItem> touchBarMakeItemForIdentifier(TouchBar *,
                                                                const QString &name) override
    {
        if (name == u"none"_s)
            return nullptr;
        auto view = std::make_unique<SegmentedControl>(name.split(u' '), this, tap);
        return std::make_unique<TouchBarItem>(TouchBarItem{name, std::move(view), 0});
    }
    Q_INVOKABLE void tapped(QObject *sender)
    {
        selected = qobject_cast<SegmentedControl *>(sender)->selectedSegment();
        if (whenTapped)
            whenTapped();
    }
};

struct OneScreen : Screen
{
    OneScreen() { desktopServices().screen = this; }
    ~OneScreen() override { desktopServices().screen = nullptr; }
    QRect visibleFrame(const QWidget *) const override { return room; }
    QRect room{0, 0, 1600, 900};
};

struct TouchBarStripTest : testing::Test
{
    OneScreen screen;
    Maker maker;
    MainWindow window;
    QLineEdit *field = new QLineEdit;

    TouchBarStripTest()
    {
        window.setCentralWidget(new QWidget);
        field->setParent(window.centralWidget());
        window.setMinimumSize(300, 200);
        window.resize(300, 200);
        EXPECT_TRUE(activate(window));
        field->setFocus();
    }

    void install(QWidget *view, const QStringList &identifiers)
    {
        TouchBar::install(view, std::make_unique<TouchBar>(&maker, identifiers));
    }
    SegmentedControl *control(int item) const
    {
        return qobject_cast<SegmentedControl *>(window.touchBarStrip()->itemViews().value(item));
    }
    QString shown() const
    {
        QString names;
        for (int i = 0; control(i); ++i)
            names += control(i)->segment(0)->accessibleName();
        return names;
    }
};

} // namespace

TEST_F(TouchBarStripTest, LeavesTheWindowSmallEnoughForItsScreen)
{
    screen.room.setHeight(240);
    install(&window, {u"a"_s});
    EXPECT_EQ(window.minimumHeight(), 240 - Screen::windowBorders);
}

TEST_F(TouchBarStripTest, StandsBelowTheContentAsLongAsThereIsABar)
{
    EXPECT_FALSE(window.touchBarStrip());
    install(&window, {u"a b"_s, u"none"_s, u"c"_s});
    EXPECT_EQ(shown(), u"ac"_s);
    EXPECT_SOON(window.centralWidget()->height() >= 200) << "the content keeps its room";
    EXPECT_GE(window.touchBarStrip()->mapTo(&window, QPoint()).y(),
              window.centralWidget()->geometry().bottom());
    TouchBar::install(&window, nullptr);
    EXPECT_FALSE(window.touchBarStrip()->isVisible());
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(TouchBarStripTest, TellsTheTargetWhichSegmentItWas)
{
    install(&window, {u"a b c"_s});
    QTest::mouseClick(control(0)->segment(1), Qt::LeftButton);
    EXPECT_EQ(maker.selected, 1);
    EXPECT_TRUE(field->hasFocus()) << "a click leaves the keyboard alone";
    control(0)->segment(0)->setFocus();
    for (const auto &[key, selected] : {std::pair(Qt::Key_Return, 0),
                                        {Qt::Key_Right, 0},
                                        {Qt::Key_Space, 1},
                                        {Qt::Key_Right, 1},
                                        {Qt::Key_Enter, 2}}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        EXPECT_EQ(maker.selected, selected);
    }
    maker.whenTapped = [] { throw 1; }; // ends in the control
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
}

TEST_F(TouchBarStripTest, KeepsTheKeyboardWhenATapChangesTheBar)
{
    install(&window, {u"a b"_s});
    control(0)->segment(1)->setFocus();
    const std::pair<QString, int> changes[] = {{u"c d"_s, 1}, {u"e"_s, 0}, {u"none"_s, -1}};
    for (const auto &[bar, segment] : changes) {
        maker.whenTapped = [this, bar = bar] { install(&window, {bar}); };
        QTest::keyClick(window.focusWidget(), Qt::Key_Space);
        const QWidget *next =
            segment < 0 ? field : static_cast<QWidget *>(control(0)->segment(segment));
        EXPECT_EQ(window.focusWidget(), next) << qPrintable(bar);
    }
}

TEST_F(TouchBarStripTest, FollowsTheKeyboardToViewsWithABarOfTheirOwn)
{
    auto *sheet = new QWidget(window.centralWidget());
    auto *inside = new QLineEdit(sheet);
    sheet->show();
    install(&window, {u"a"_s});
    install(sheet, {u"b"_s});
    EXPECT_EQ(shown(), u"a"_s);
    inside->setFocus();
    EXPECT_EQ(shown(), u"b"_s);
    install(&window, {u"c"_s});
    EXPECT_EQ(shown(), u"b"_s);
    control(0)->segment(0)->setFocus();
    EXPECT_EQ(shown(), u"b"_s) << "the strip itself has no bar";
    field->setFocus();
    EXPECT_EQ(shown(), u"c"_s);
}

TEST(SegmentedControl, CutsLongTextsAndNamesThem)
{
    const QString longTitle(40, u'x');
    SegmentedControl control({longTitle, u"&short"_s}, nullptr, {});
    EXPECT_GT(control.segment(0)->sizeHint().width(), 200);
    control.resize(200, 30);
    control.show();
    EXPECT_EQ(control.segment(0)->toolTip(), longTitle);
    EXPECT_EQ(control.segment(1)->toolTip(), QString());
    EXPECT_EQ(control.segment(1)->accessibleName(), u"&short"_s);
    EXPECT_EQ(control.segment(2), nullptr);
}

TEST(HostLook, SpinnersFollowTheWishForLittleMotion)
{
    const QString style = QApplication::style()->name();
    HostLook::apply();
    ProgressIndicator spinner;
    spinner.show();
    spinner.startAnimation();
    for (const bool isReduced : {true, false}) {
        HostLook::setReducedMotion(isReduced);
        EXPECT_EQ(spinner.isTurning(), !isReduced);
    }
    QApplication::setStyle(style);
    HostLook::setReducedMotion(true); // another style is not the host's
    EXPECT_TRUE(spinner.isTurning());
}

#include "TouchBarStripTest.moc"

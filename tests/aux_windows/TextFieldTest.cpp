#include "aux_windows/mndTextField.h"
#include "support/TestServices.h"

namespace {

struct Target : QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE void count() { ++clicks; }
    Q_INVOKABLE void raise() { throw std::runtime_error("no"); }
    int clicks = 0;
};

struct TextField : testing::Test
{
    TextField() { EXPECT_TRUE(activate(window)); }
    QAccessibleInterface *spoken() { return QAccessible::queryAccessibleInterface(&label); }

    TestServices services;
    Target target;
    QWidget window;
    mndTextField label{u"Close & go"_s, &window};
};

} // namespace

TEST_F(TextField, LooksLikeALinkWhileItIsEnabled)
{
    label.setAlignment(Qt::AlignRight | Qt::AlignBottom);
    EXPECT_FALSE(label.attributedStringValue().underlined) << "a text set by the designer";
    label.setClickTarget(&target, Selector(u"count"_s));
    EXPECT_TRUE(label.attributedStringValue().underlined);
    EXPECT_EQ(label.attributedStringValue().text, u"Close & go"_s);
    EXPECT_EQ(label.alignment(), Qt::AlignRight | Qt::AlignBottom);
    for (const bool enabled : {false, true, true}) {
        label.setFont({});
        label.setCursor(Qt::WaitCursor);
        label.setEnabled(enabled);
        EXPECT_EQ(label.font().underline(), enabled);
        EXPECT_EQ(label.cursor().shape(), enabled ? Qt::PointingHandCursor : Qt::ArrowCursor);
        EXPECT_EQ(label.stringValue(), u"Close & go"_s);
    }
    window.setEnabled(false);
    label.setStringValue(u"<b>other</b>"_s);
    EXPECT_FALSE(label.font().underline());
    EXPECT_EQ(label.text(), u"<b>other</b>"_s);
}

TEST_F(TextField, SendsItsMessageByMouseKeyboardAndAssistiveTechnology)
{
    auto *other = new QPushButton(&window);
    other->show();
    label.show();
    other->setFocus();
    QTest::mouseClick(&label, Qt::LeftButton);
    EXPECT_EQ(spoken()->role(), QAccessible::StaticText);
    QTest::keyClick(other, Qt::Key_Tab);
    EXPECT_FALSE(label.hasFocus()) << "without a target there is nothing to press";

    label.setClickTarget(&target, Selector(u"count"_s));
    QTest::mousePress(&label, Qt::LeftButton);
    EXPECT_EQ(target.clicks, 1) << "on the press";
    QTest::mouseRelease(&label, Qt::LeftButton);
    QTest::mouseClick(&label, Qt::RightButton);
    EXPECT_EQ(target.clicks, 1);
    QTest::keyClick(other, Qt::Key_Tab);
    EXPECT_TRUE(label.hasFocus());
    const QImage focused = label.grab().toImage();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_A})
        QTest::keyClick(&label, key);
    EXPECT_EQ(target.clicks, 4);
    other->setFocus();
    EXPECT_NE(label.grab().toImage(), focused) << "the keyboard's place is to be seen";

    EXPECT_EQ(spoken()->role(), QAccessible::Link);
    EXPECT_EQ(spoken()->text(QAccessible::Name), u"Close & go"_s);
    EXPECT_EQ(spoken()->actionInterface()->actionNames().value(0),
              QAccessibleActionInterface::pressAction());
    spoken()->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(target.clicks, 5);
    label.setEnabled(false);
    QTest::mouseClick(&label, Qt::LeftButton);
    label.setEnabled(true);
    label.setClickTarget(&target, {});
    QTest::mouseClick(&label, Qt::LeftButton);
    EXPECT_EQ(target.clicks, 5);
}

TEST_F(TextField, DropsWhatItsTargetThrowsAndATargetThatIsGone)
{
    label.setClickTarget(&target, Selector(u"raise"_s));
    EXPECT_NO_THROW(QTest::mouseClick(&label, Qt::LeftButton));
    label.setClickTarget(&target, Selector(u"unknown"_s));
    QTest::mouseClick(&label, Qt::LeftButton);
    auto shortLived = std::make_unique<Target>();
    label.setClickTarget(shortLived.get(), Selector(u"count"_s));
    shortLived.reset();
    QTest::mouseClick(&label, Qt::LeftButton);
}

#include "TextFieldTest.moc"

#include "plugin_host/mndPlugins.h"
#include "support/TestServices.h"

#include <QTabWidget>
#include <QVBoxLayout>

namespace {

struct OwnButton : QPushButton
{
    Q_OBJECT
};

/// To Qt, its class is the one it derives from.
struct PlainButton : QPushButton
{ };

} // namespace

TEST(Recolouring, GoesByTheExactClassThroughAllTabs)
{
    QWidget root;
    auto *nested = new QWidget(&root);
    const QWidget *texts[] = {new QLabel(nested), new QLineEdit(nested)};
    QPushButton *derived[] = {new OwnButton, new PlainButton};
    for (QPushButton *each : derived)
        each->setParent(nested);
    auto *tabs = new QTabWidget(&root);
    auto *otherTab = new QWidget;
    tabs->addTab(new QWidget, u"1"_s);
    tabs->addTab(otherTab, u"2"_s);
    const QWidget *titles[] = {new QPushButton(nested), new QCheckBox(nested),
                               new QPushButton(otherTab)};
    const QColor before = derived[0]->palette().color(QPalette::ButtonText);
    ASSERT_NE(before, QColor(Qt::white));

    mndPlugins::recurseSubViews(&root);
    for (const QWidget *text : texts)
        EXPECT_EQ(text->property("backgroundStyle"), 2);
    for (const QWidget *titled : titles) {
        EXPECT_EQ(titled->palette().color(QPalette::Active, QPalette::ButtonText), Qt::white);
        EXPECT_EQ(titled->palette().color(QPalette::Active, QPalette::WindowText), Qt::white);
    }
    for (const QPushButton *each : derived)
        EXPECT_EQ(each->palette().color(QPalette::ButtonText), before) << "a subclass keeps its";
    EXPECT_TRUE(tabs->documentMode());
    mndPlugins::recurseSubViews(nullptr);
    mndPlugins::setButtonStringColor(nullptr, Qt::red);
}

TEST(Recolouring, KeepsTheFontAndDimsDarkTitlesOfWhatIsDisabled)
{
    QPushButton button(u"Title"_s);
    QFont font = button.font();
    font.setItalic(true);
    button.setFont(font);
    mndPlugins::setButtonStringColor(&button, Qt::red);
    EXPECT_TRUE(button.font().italic());
    EXPECT_EQ(button.text(), u"Title"_s);
    for (const auto &[color, alpha] : {std::pair(Qt::black, 0.6F), {Qt::white, 1.0F}}) {
        mndPlugins::setButtonStringColor(&button, color);
        EXPECT_NEAR(button.palette().color(QPalette::Disabled, QPalette::ButtonText).alphaF(),
                    alpha, 0.01);
    }
}

#include "PluginViewsTest.moc"

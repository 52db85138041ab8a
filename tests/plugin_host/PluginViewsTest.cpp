#include "plugin_host/mndPlugins.h"
#include "support/TestServices.h"

#include <QTabWidget>
#include <QVBoxLayout>

namespace {

class OwnButton : public QPushButton
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
    auto *label = new QLabel(nested);
    auto *edit = new QLineEdit(nested);
    auto *button = new QPushButton(nested);
    auto *check = new QCheckBox(nested);
    auto *own = new OwnButton;
    own->setParent(nested);
    auto *plain = new PlainButton;
    plain->setParent(nested);
    auto *tabs = new QTabWidget(&root);
    auto *shownTab = new QWidget;
    auto *otherTab = new QWidget;
    auto *tabButton = new QPushButton(otherTab);
    tabs->addTab(shownTab, u"1"_s);
    tabs->addTab(otherTab, u"2"_s);
    const QColor before = own->palette().color(QPalette::ButtonText);
    ASSERT_NE(before, QColor(Qt::white));

    mndPlugins::recurseSubViews(&root);
    EXPECT_EQ(label->property("backgroundStyle"), 2);
    EXPECT_EQ(edit->property("backgroundStyle"), 2);
    for (const QWidget *titled : {static_cast<QWidget *>(button), static_cast<QWidget *>(check),
                                  static_cast<QWidget *>(tabButton)}) {
        EXPECT_EQ(titled->palette().color(QPalette::Active, QPalette::ButtonText), Qt::white);
        EXPECT_EQ(titled->palette().color(QPalette::Active, QPalette::WindowText), Qt::white);
    }
    for (const QPushButton *derived :
         {static_cast<QPushButton *>(own), static_cast<QPushButton *>(plain)})
        EXPECT_EQ(derived->palette().color(QPalette::ButtonText), before) << "a subclass keeps its";
    EXPECT_TRUE(tabs->documentMode());
    mndPlugins::recurseSubViews(nullptr);
    mndPlugins::setButtonStringColor(nullptr, Qt::red);
}

TEST(Recolouring, KeepsTheFontAndDimsWhatIsDisabled)
{
    QPushButton button(u"Title"_s);
    QFont font = button.font();
    font.setItalic(true);
    button.setFont(font);
    mndPlugins::setButtonStringColor(&button, Qt::red);
    EXPECT_TRUE(button.font().italic());
    EXPECT_EQ(button.text(), u"Title"_s);
    EXPECT_LT(button.palette().color(QPalette::Disabled, QPalette::ButtonText).alphaF(), 0.6F);
}

#include "PluginViewsTest.moc"

#include "platform/ui/HostLook.h"
#include "platform/ui/HostColors.h"
#include "plugin_host/mndPlugins.h"
#include "plugin_host/mndTheme.h"
#include "plugins/common/Card.h"
#include "plugins/common/Look.h"
#include "plugins/status/HistoryChart.h"

#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QStyle>

#include <malloc.h>

namespace {

constexpr qreal readable = 4.5;
constexpr qreal discernible = 3;

/// WCAG 2.1, relative luminance and contrast ratio.
double luminance(const QColor &color)
{
    const auto linear = [](float part) {
        return part <= 0.04045F ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}
double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

constexpr int scale = 4;

QImage drawn(QWidget &widget)
{
    QImage image(widget.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    widget.render(&image);
    return image;
}

/// The darkest and the lightest colour in the part of the picture, given in points.
std::pair<QColor, QColor> extremes(const QImage &image, const QRect &part)
{
    std::pair<QColor, QColor> found(Qt::white, Qt::black);
    for (int y = part.top() * scale; y < (part.bottom() + 1) * scale; ++y) {
        for (int x = part.left() * scale; x < (part.right() + 1) * scale; ++x) {
            const QColor here = image.pixelColor(x, y);
            if (luminance(here) < luminance(found.first))
                found.first = here;
            if (luminance(here) > luminance(found.second))
                found.second = here;
        }
    }
    return found;
}

/// How many pixels look different.
int changes(const QImage &before, const QImage &after)
{
    int changed = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x)
            changed += contrast(before.pixelColor(x, y), after.pixelColor(x, y)) >= discernible;
    }
    return changed;
}

/// Of the title, on the place of the body where it is worst.
double titleContrast(const QImage &image, const QRect &title, const QRect &body)
{
    const auto [darkest, lightest] = extremes(image, title);
    const auto [darkestBody, lightestBody] = extremes(image, body);
    return std::max(contrast(darkest, darkestBody), contrast(lightest, lightestBody));
}

} // namespace

TEST(HostLook, ColoursStandOutFromTheirGrounds)
{
    using namespace HostColors;
    const QColor sidebar = mndTheme().sidebarColor();
    const std::tuple<const char *, QColor, QColor, double> pairs[] = {
        {"text", text, ground, readable},
        {"text, other row", text, otherRow, readable},
        {"quiet text", quietText, ground, readable},
        {"quiet text, other row", quietText, otherRow, readable},
        {"tool tip", text, toolTip, readable},
        {"link", linkText, ground, readable},
        {"selection", lightText, accent, readable},
        {"selection without keyboard", lightText, otherSelection, readable},
        {"selection in the sidebar", accent, sidebar, discernible},
        {"without keyboard, there", otherSelection, sidebar, discernible},
        {"sidebar title", mndTheme().sidebarFontColor(), sidebar, readable},
        {"sidebar heading", sidebarHeading, sidebar, readable},
        {"disclosure", disclosure, sidebar, discernible},
        {"spinner", spinner, accent, discernible},
        {"spinner without keyboard", spinner, otherSelection, discernible},
        {"ring", accent, ground, discernible},
        {"edge", edge, ground, discernible},
        {"ring of the slider", accent, slider, discernible},
        {"thumb", thumb, ground, discernible},
        {"sidebar's thumb", thumb, sidebar, discernible},
        {"segment", lightText, segment, readable},
        {"segment under the mouse", lightText, segmentUnderMouse, readable},
        {"segment pressed", lightText, segmentPressed, readable},
        {"segment's edge", segmentEdge, segment, discernible},
        {"segment's edge outside", segmentEdge, stripGround, discernible},
        {"segment's ring", segmentRing, segment, discernible},
        {"page: text", look::text, Qt::white, readable},
        {"page: secondary text", look::secondaryText, Qt::white, readable},
        {"page: warning", look::warningText, Qt::white, readable},
        {"page: line", look::hairline, Qt::white, discernible},
        {"page: bar", look::accent, look::track, discernible},
        {"page: warning bar", look::warning, look::track, discernible},
        {"page: first chart", look::accent, Qt::white, discernible},
        {"page: second chart", look::secondAccent, Qt::white, discernible},
    };
    for (const auto &[name, color, behind, least] : pairs)
        EXPECT_GE(contrast(color, behind), least) << name;
}

TEST(HostLook, TitlesAreReadableInEveryState)
{
    HostLook::apply();
    enum State { Usual, Default, Pressed, Disabled };
    for (const bool isRecoloured : {false, true}) {
        QPushButton push;
        QCheckBox check;
        QRadioButton radio;
        for (QAbstractButton *button :
             std::initializer_list<QAbstractButton *>{&push, &check, &radio}) {
            button->setText(u"HHHH"_s);
            button->resize(120, 30);
            if (isRecoloured)
                mndPlugins::setButtonStringColor(button, Qt::white);
            const int left = button == &push ? 42 : 20;
            const QRect title(left, 5, 36, 20);
            // Between the edge and the title.
            const QRect body(button == &push ? 8 : left - 1, 6, 1, 18);
            for (const State state : {Usual, Default, Pressed, Disabled}) {
                SCOPED_TRACE(testing::Message() << button->metaObject()->className() << state
                                                << " recoloured: " << isRecoloured);
                push.setDefault(state == Default);
                button->setDown(state == Pressed);
                button->setEnabled(state != Disabled);
                EXPECT_GE(titleContrast(drawn(*button), title, body), readable);
            }
        }
    }
}

TEST(HostLook, EdgesLinesAndRingsCanBeSeen)
{
    HostLook::apply();
    QWidget window;
    window.resize(300, 300);
    QCheckBox check(&window);
    QRadioButton radio(&window);
    QLineEdit field(&window);
    QSpinBox number(&window);
    QComboBox choice(&window);
    choice.setEditable(true);
    QSlider slider(Qt::Horizontal, &window);
    QScrollBar bar(Qt::Horizontal, &window);
    QPushButton push(u"H"_s, &window);
    Card card(&window);
    HistoryChart chart(look::accent);
    chart.setParent(&window);
    check.setText(u"H"_s);
    radio.setText(u"H"_s);
    QWidget view(&window);
    look::addScrollingColumn(&view, u"page"_s);
    auto *page = view.findChild<QScrollArea *>();
    page->setFocusPolicy(Qt::StrongFocus); // as while there is something to scroll
    QWidget elsewhere(&window);
    elsewhere.setFocusPolicy(Qt::StrongFocus);
    ASSERT_TRUE(activate(window));
    for (const bool isEnabled : {true, false}) {
        for (QWidget *each :
             std::initializer_list<QWidget *>{&check, &radio, &field, &number, &choice, &slider,
                                              &bar, &push, &card, &chart, page}) {
            SCOPED_TRACE(each->metaObject()->className());
            each->resize(100, 30);
            each->setEnabled(isEnabled);
            elsewhere.setFocus(Qt::TabFocusReason);
            const QImage usual = drawn(*each);
            const QRect start(0, 10, 9, 20);
            if (each != page && (isEnabled || each != &bar)) {
                EXPECT_GE(contrast(extremes(usual, start).first, Qt::white), discernible);
            }
            if (!isEnabled || each->focusPolicy() == Qt::NoFocus)
                continue;
            each->setFocus(Qt::TabFocusReason);
            window.setAttribute(Qt::WA_KeyboardFocusChange); // as after the first Tab
            EXPECT_GT(changes(usual, drawn(*each)), 40 * scale) << "the ring of the keyboard";
        }
    }
}

TEST(HostLook, MarksTheReachedTitleOfTheMenuBarAndRaisesTexts)
{
    HostLook::apply();
    QMenuBar menus;
    menus.addMenu(u"HHHH"_s);
    menus.resize(100, 30);
    const QImage unreached = drawn(menus);
    const QPointF title = menus.actionGeometry(menus.actions().first()).center();
    QMouseEvent reach(QEvent::MouseMove, title, title, Qt::NoButton, {}, {});
    QApplication::sendEvent(&menus, &reach);
    EXPECT_GT(changes(unreached, drawn(menus)), 40 * scale);

    QLabel label(u"HHHH"_s);
    label.setAutoFillBackground(true);
    label.setPalette(QPalette(Qt::black, HostColors::accent));
    label.resize(100, 30);
    const auto lightest = [&] { return luminance(extremes(drawn(label), label.rect()).second); };
    const double flat = lightest();
    label.setProperty("backgroundStyle", 2);
    EXPECT_GT(lightest(), flat);
}

TEST(HostLook, KeepsFewOfTheStylesPictures)
{
    HostLook::apply();
    const auto before = ::mallinfo2().uordblks;
    for (int width = 100; width < 500; ++width) {
        QPushButton button;
        button.resize(width, 30);
        drawn(button);
    }
    EXPECT_LT(::mallinfo2().uordblks, before + 1'000'000);
}

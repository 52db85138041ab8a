#include "platform/ui/HostLook.h"

#include "platform/ui/HostColors.h"
#include "platform/ui/ScrollBarLook.h"

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QProxyStyle>
#include <QPushButton>
#include <QSlider>
#include <QStyleOption>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The plain style of the toolkit with a menu bar tall enough to serve as the window's title row.
class HostStyle : public QProxyStyle
{
public:
    HostStyle()
        : QProxyStyle(u"Fusion"_s)
    { }

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override
    {
        QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        if (type == CT_MenuBarItem)
            size.setHeight(qMax(size.height(), titleRowHeight));
        return size;
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        if (element == CE_CheckBoxLabel || element == CE_RadioButtonLabel)
            drawBodyOfWhiteTitle(*option, *painter);
        QProxyStyle::drawControl(element, option, painter, widget);
        if (element == CE_MenuBarItem)
            drawLeadOfMenuBar(*option, *painter);
        if (element == CE_PushButton)
            drawRing(*option, *painter, QRectF(option->rect).adjusted(2, 2, -2, -2),
                     QPalette::ButtonText);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        switch (element) {
        case PE_PanelScrollAreaCorner:
            painter->fillRect(option->rect, option->palette.color(QPalette::Base));
            return;
        case PE_FrameFocusRect:
            drawFocus(*option, *painter, widget);
            return;
        case PE_IndicatorCheckBox:
        case PE_IndicatorRadioButton:
            drawWithEdge<QStyleOptionButton>(element, option, painter, widget);
            return;
        case PE_Frame:
            drawWithEdge<QStyleOptionFrame>(element, option, painter, widget);
            return;
        case PE_FrameLineEdit:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            drawBorder(*option, *painter);
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    /// A label whose background style is "raised" has its dark text lit from above: a light edge
    /// lies below each letter. That shows on a coloured ground, and leaves a white one clean.
    void drawItemText(QPainter *painter, const QRect &rect, int flags, const QPalette &palette,
                      bool enabled, const QString &text, QPalette::ColorRole role) const override
    {
        constexpr int raised = 2;
        const auto *label = dynamic_cast<const QLabel *>(painter->device());
        if (label && enabled && label->property("backgroundStyle").toInt() == raised
            && palette.color(role).lightness() < 128) {
            QPalette light = palette;
            light.setColor(role, QColor(255, 255, 255, 150));
            QProxyStyle::drawItemText(painter, rect.translated(0, 1), flags, light, enabled, text,
                                      role);
        }
        QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, role);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override
    {
        const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        return control == CC_ScrollBar && bar
            ? ScrollBarLook::partRect(*bar, part)
            : QProxyStyle::subControlRect(control, option, part, widget);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override
    {
        const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        if (control == CC_ScrollBar && bar)
            ScrollBarLook::draw(*bar, *painter);
        else
            QProxyStyle::drawComplexControl(control, option, painter, widget);
        const auto *list = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        if (control == CC_SpinBox || (control == CC_ComboBox && list && list->editable)) {
            drawBorder(*option, *painter);
        } else if (control == CC_ComboBox) {
            drawRing(*option, *painter, option->rect, QPalette::ButtonText);
        } else if (control == CC_Slider) {
            for (const auto part : {SC_SliderGroove, SC_SliderHandle})
                drawEdge(*painter, subControlRect(control, option, part, widget));
            drawRing(*option, *painter, subControlRect(control, option, SC_SliderHandle, widget),
                     QPalette::Highlight);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_Widget_Animation_Duration && m_hasReducedMotion)
            return 0;
        // An etched shadow makes disabled texts look smudged on a white ground.
        return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }

    QIcon standardIcon(StandardPixmap which, const QStyleOption *option,
                       const QWidget *widget) const override
    {
        // Every menu bar asks for it when it is made. Reading it from its file has all image-format
        // plugins loaded, to look which of them knows the format; the pixmap is built in.
        return which == SP_ToolBarHorizontalExtensionButton
            ? QIcon(standardPixmap(which, option, widget))
            : QProxyStyle::standardIcon(which, option, widget);
    }

    /// Answers whether that was a change.
    bool setReducedMotion(bool reduced)
    {
        return std::exchange(m_hasReducedMotion, reduced) != reduced;
    }

private:
    /// The style makes its outlines from the ground's colour, which on white is hardly seen.
    template <typename Option>
    void drawWithEdge(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                      const QWidget *widget) const
    {
        constexpr int undoesItsDarkening = 127;
        const auto *given = qstyleoption_cast<const Option *>(option);
        Option edged = given ? *given : Option();
        if (!given)
            edged.QStyleOption::operator=(*option);
        edged.palette.setColor(QPalette::Window, HostColors::edge.lighter(undoesItsDarkening));
        QProxyStyle::drawPrimitive(element, &edged, painter, widget);
    }

    static void drawEdge(QPainter &painter, const QRectF &outline)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(HostColors::edge);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(outline.adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
        painter.restore();
    }

    /// Of a text field: the text cursor alone is easily overlooked.
    static void drawBorder(const QStyleOption &option, QPainter &painter)
    {
        QStyleOption field(option);
        field.state |= State_KeyboardFocusChange;
        if (option.state & State_HasFocus)
            drawRing(field, painter, option.rect, QPalette::Highlight);
        else
            drawEdge(painter, option.rect);
    }

    /// Of what has no ring of its own.
    static void drawFocus(const QStyleOption &option, QPainter &painter, const QWidget *widget)
    {
        if (qobject_cast<const QPushButton *>(widget) || qobject_cast<const QSlider *>(widget))
            return;
        const auto *rect = qstyleoption_cast<const QStyleOptionFocusRect *>(&option);
        const bool isOnSelection = rect && rect->state & State_Selected;
        QStyleOption ring(option);
        ring.state |= State_HasFocus;
        drawRing(ring, painter, option.rect,
                 isOnSelection ? QPalette::HighlightedText : QPalette::Highlight);
    }

    /// Along the inside of what has the keyboard. The style's own, a darker outline, can hardly be
    /// told from none.
    static void drawRing(const QStyleOption &option, QPainter &painter, const QRectF &outline,
                         QPalette::ColorRole color)
    {
        constexpr State focused = State_HasFocus | State_KeyboardFocusChange;
        if ((option.state & focused) != focused)
            return;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(option.palette.color(color), ringWidth));
        painter.setBrush(Qt::NoBrush);
        constexpr qreal inset = ringWidth / 2;
        painter.drawRoundedRect(outline.adjusted(inset, inset, -inset, -inset), 2, 2);
        painter.restore();
    }

    /// The title that Alt or the arrow keys have reached while no menu is open yet. The style marks
    /// only those whose menu is open.
    static void drawLeadOfMenuBar(const QStyleOption &option, QPainter &painter)
    {
        if (!(option.state & State_Selected) || (option.state & State_Sunken))
            return;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(option.palette.color(QPalette::Highlight), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 3, 3);
        painter.restore();
    }

    /// A title that was made white needs a body on a white page.
    static void drawBodyOfWhiteTitle(const QStyleOption &option, QPainter &painter)
    {
        const QPalette &look = option.palette;
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(&option);
        if (!button || button->text.isEmpty() || look.color(QPalette::WindowText).lightness() < 220
            || look.color(QPalette::Window).lightness() < 160) {
            return;
        }
        const int width =
            option.fontMetrics.size(Qt::TextShowMnemonic, button->text).width() + 2 * bodyMargin;
        const QRect body = QStyle::visualRect(
            option.direction, option.rect,
            QRect(option.rect.left() - bodyMargin, option.rect.top(), width, option.rect.height()));
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(look.color(QPalette::Button));
        painter.drawRoundedRect(body, bodyMargin, bodyMargin);
        painter.restore();
    }

    bool m_hasReducedMotion = false;

    static constexpr int bodyMargin = 4;
    static constexpr qreal ringWidth = 1.5;
    static constexpr int titleRowHeight = 26;
};

} // namespace

namespace HostLook {

constexpr int keptPictures = 512; // KB

QPalette palette()
{
    using namespace HostColors;
    QPalette look(accent, ground);
    look.setColor(QPalette::Window, ground);
    look.setColor(QPalette::WindowText, text);
    look.setColor(QPalette::Base, ground);
    look.setColor(QPalette::AlternateBase, otherRow);
    look.setColor(QPalette::Text, text);
    look.setColor(QPalette::PlaceholderText, quietText);
    look.setColor(QPalette::ToolTipBase, toolTip);
    look.setColor(QPalette::ToolTipText, text);
    // Buttons have a coloured body, disabled ones too, on which white titles read well.
    look.setColor(QPalette::Button, button);
    look.setColor(QPalette::ButtonText, lightText);
    look.setColor(QPalette::Highlight, accent);
    look.setColor(QPalette::HighlightedText, lightText);
    look.setColor(QPalette::Link, linkText);
    for (const auto role : {QPalette::WindowText, QPalette::Text})
        look.setColor(QPalette::Disabled, role, quietText);
    look.setColor(QPalette::Disabled, QPalette::Button, disabledButton);
    return look;
}

void apply()
{
    QApplication::setStyle(new HostStyle);
    // The style keeps a picture of each size, state and palette that it has painted, and plugins
    // make new palettes with every sheet: ten megabytes of them, as is usual, no window has a use
    // for.
    QPixmapCache::setCacheLimit(keptPictures);
    QApplication::setPalette(palette());
    // Menus are drawn in button colours, but have no coloured body.
    QPalette menus = palette();
    menus.setColor(QPalette::Button, HostColors::ground);
    menus.setColor(QPalette::ButtonText, HostColors::text);
    menus.setColor(QPalette::Disabled, QPalette::ButtonText, HostColors::quietText);
    QApplication::setPalette(menus, "QMenuBar");
    QApplication::setPalette(menus, "QMenu");
    QApplication::setPalette(menus, "QTabBar");
    QPalette bars = palette();
    bars.setColor(QPalette::Button, HostColors::slider);
    QApplication::setPalette(bars, "QSlider");
    bars.setColor(QPalette::Button, HostColors::thumb);
    QApplication::setPalette(bars, "QScrollBar");
}

void setReducedMotion(bool reduced)
{
    auto *style = dynamic_cast<HostStyle *>(QApplication::style());
    if (!style || !style->setReducedMotion(reduced))
        return;
    QEvent change(QEvent::StyleChange);
    for (QWidget *widget : QApplication::allWidgets())
        QCoreApplication::sendEvent(widget, &change);
}

} // namespace HostLook

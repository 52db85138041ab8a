#include "platform/ui/HostLook.h"

#include "platform/ui/ScrollBarLook.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOptionButton>
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
        if (element == PE_PanelScrollAreaCorner)
            painter->fillRect(option->rect, option->palette.color(QPalette::Base));
        else
            QProxyStyle::drawPrimitive(element, option, painter, widget);
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
        if (control == CC_Slider)
            drawRing(*option, *painter, subControlRect(control, option, SC_SliderHandle, widget),
                     QPalette::Highlight);
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
        painter.setBrush(look.color(QPalette::Button).lighter(130));
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

QPalette palette()
{
    const QColor text(0x1f, 0x29, 0x33);
    const QColor quiet(0x76, 0x80, 0x8a);
    const QColor accent(0x2f, 0x7f, 0xc1);

    QPalette look(accent, Qt::white);
    look.setColor(QPalette::Window, Qt::white);
    look.setColor(QPalette::WindowText, text);
    look.setColor(QPalette::Base, Qt::white);
    look.setColor(QPalette::AlternateBase, QColor(0xf4, 0xf7, 0xfa));
    look.setColor(QPalette::Text, text);
    look.setColor(QPalette::PlaceholderText, quiet);
    look.setColor(QPalette::ToolTipBase, QColor(0xff, 0xff, 0xf0));
    look.setColor(QPalette::ToolTipText, text);
    // Buttons have a coloured body, on which white titles read well.
    // The style lightens it for the body.
    look.setColor(QPalette::Button, QColor(0x1b, 0x5b, 0x94));
    look.setColor(QPalette::ButtonText, Qt::white);
    look.setColor(QPalette::Highlight, accent);
    look.setColor(QPalette::HighlightedText, Qt::white);
    look.setColor(QPalette::Link, QColor(0x1a, 0x66, 0xa8));
    for (const auto role : {QPalette::WindowText, QPalette::Text}) {
        look.setColor(QPalette::Disabled, role, quiet);
    }
    look.setColor(QPalette::Disabled, QPalette::Button, QColor(0xc3, 0xd0, 0xdb));
    look.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::white);
    return look;
}

void apply()
{
    QApplication::setStyle(new HostStyle);
    QApplication::setPalette(palette());
    // Menus are drawn in button colours, but have no coloured body.
    QPalette menus = palette();
    menus.setColor(QPalette::Button, Qt::white);
    menus.setColor(QPalette::ButtonText, menus.color(QPalette::WindowText));
    menus.setColor(QPalette::Disabled, QPalette::ButtonText,
                   menus.color(QPalette::Disabled, QPalette::WindowText));
    QApplication::setPalette(menus, "QMenuBar");
    QApplication::setPalette(menus, "QMenu");
    QApplication::setPalette(menus, "QTabBar");
    QPalette bars = palette();
    bars.setColor(QPalette::Button, QColor(0xcf, 0xd6, 0xdd));
    QApplication::setPalette(bars, "QSlider");
    bars.setColor(QPalette::Button, QColor(0x8a, 0x95, 0xa0));
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

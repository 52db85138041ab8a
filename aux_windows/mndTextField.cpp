#include "aux_windows/mndTextField.h"

#include "platform/foundation/Perform.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

class AccessibleTextField : public QAccessibleWidget
{
public:
    explicit AccessibleTextField(mndTextField *field)
        : QAccessibleWidget(field, QAccessible::Link)
        , m_field(field)
    { }

    QAccessible::Role role() const override
    {
        return m_field->isClickable() ? QAccessible::Link : QAccessible::StaticText;
    }
    QString text(QAccessible::Text kind) const override
    {
        const QString given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? m_field->stringValue() : given;
    }
    QStringList actionNames() const override
    {
        return m_field->isClickable() ? QStringList{pressAction()}
                                      : QAccessibleWidget::actionNames();
    }
    void doAction(const QString &name) override
    {
        if (name == pressAction())
            m_field->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    mndTextField *m_field;
};

QAccessibleInterface *accessibleTextField(const QString &, QObject *object)
{
    auto *field = qobject_cast<mndTextField *>(object);
    return field ? new AccessibleTextField(field) : nullptr;
}

} // namespace

mndTextField::mndTextField(QWidget *parent)
    : QLabel(parent)
{
    setUp();
}

mndTextField::mndTextField(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setUp();
}

void mndTextField::setUp()
{
    QAccessible::installFactory(accessibleTextField);
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::NoTextInteraction);
    setForegroundRole(QPalette::Link);
    resetCursorRects();
}

void mndTextField::setClickTarget(QObject *target, const Selector &selector)
{
    _obj = target;
    _sel = selector;
    setStringValue(text());
}

void mndTextField::setStringValue(const QString &text)
{
    setText(text);
    // The whole text in one look, on the label's own lines.
    QFont look = font();
    look.setUnderline(isEnabled());
    setFont(look);
    setFocusPolicy(_obj && !_sel.isEmpty() ? Qt::TabFocus : Qt::NoFocus);
}

AttributedString mndTextField::attributedStringValue() const
{
    AttributedString value;
    value.text = text();
    value.underlined = font().underline();
    value.alignment = alignment();
    return value;
}

void mndTextField::setEnabled(bool enabled)
{
    QLabel::setEnabled(enabled);
    setStringValue(text());
    resetCursorRects();
}

void mndTextField::resetCursorRects()
{
    setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void mndTextField::click() noexcept
{
    // The target may delete the label.
    if (isClickable())
        perform::sendQuietly(_obj, Selector(_sel));
}

// Enabled by itself or with its window.
void mndTextField::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        setStringValue(text());
        resetCursorRects();
    }
}

// A label cannot be selected or edited by clicking: none of this reaches the base class.
void mndTextField::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() == Qt::LeftButton)
        click();
}

void mndTextField::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
}

void mndTextField::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
}

void mndTextField::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (!event->isAutoRepeat())
            click();
        break;
    default:
        event->ignore();
    }
}

void mndTextField::paintEvent(QPaintEvent *event)
{
    QLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
}

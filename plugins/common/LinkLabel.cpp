#include "plugins/common/LinkLabel.h"

#include "plugins/common/Look.h"

#include <QAccessibleWidget>
#include <QFocusEvent>

using namespace Qt::StringLiterals;

namespace {

class AccessibleLink : public QAccessibleWidget
{
public:
    explicit AccessibleLink(LinkLabel *label)
        : QAccessibleWidget(label, QAccessible::Link)
        , m_label(label)
    { }

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override
    {
        if (name == pressAction())
            m_label->follow();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    LinkLabel *m_label;
};

QAccessibleInterface *accessibleLink(const QString &, QObject *object)
{
    auto *label = dynamic_cast<LinkLabel *>(object);
    return label ? new AccessibleLink(label) : nullptr;
}

} // namespace

LinkLabel::LinkLabel(const QString &link, const QString &title)
    : m_link(link)
{
    QAccessible::installFactory(accessibleLink);
    // To read rich text takes the fonts, for which the start does not wait.
    look::whenPolished(this, [this] {
        setTextFormat(Qt::RichText);
        setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    });
    setTextFormat(Qt::PlainText);
    setText(u"<a href=\"%1\">%2</a>"_s.arg(link.toHtmlEscaped(), title.toHtmlEscaped()));
    setFocusPolicy(Qt::StrongFocus);
    setWordWrap(true);
    look::alignToLayout(this);
    setAccessibleName(title);
    QPalette colors = palette();
    colors.setColor(QPalette::Link, look::accent);
    setPalette(colors);
}

void LinkLabel::follow()
{
    Q_EMIT linkActivated(m_link);
}

/// A plain label would take one press of Tab for itself and the next for its link.
void LinkLabel::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        focusNextPrevChild(event->reason() == Qt::TabFocusReason);
}

#include "plugins/common/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

using namespace Qt::StringLiterals;

ElidedLabel::ElidedLabel(Qt::TextElideMode mode)
    : m_mode(mode)
{
    // Names of machines and volumes are data: never markup.
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const
{
    const int few = fontMetrics().averageCharWidth() * 4;
    return {qMin(few, sizeHint().width()), QLabel::minimumSizeHint().height()};
}

bool ElidedLabel::isElided() const
{
    return shownText() != text();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    if (isElided()) {
        const QString plain = u"<p style='white-space:pre'>"_s + text().toHtmlEscaped() + u"</p>"_s;
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), plain, this);
    } else {
        QToolTip::hideText();
    }
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(),
                          int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
                          isEnabled(), shownText(), foregroundRole());
}

QString ElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text(), m_mode, contentsRect().width());
}

#include "platform/ui/TouchBar.h"

#include <QCoreApplication>
#include <QWidget>

using namespace Qt::StringLiterals;

std::unique_ptr<TouchBarItem> TouchBar::makeItem(const QString &identifier)
{
    auto *builder = qobject_cast<TouchBarDelegate *>(m_delegate);
    return builder ? builder->touchBarMakeItemForIdentifier(this, identifier) : nullptr;
}

QString TouchBar::otherItemsProxy()
{
    return u"touchbar.other-items"_s;
}

void TouchBar::install(QWidget *window, std::unique_ptr<TouchBar> bar)
{
    if (!window)
        return;
    delete installed(window);
    if (bar)
        bar.release()->setParent(window);
    QEvent event(installedEvent());
    QCoreApplication::sendEvent(window->window(), &event);
}

TouchBar *TouchBar::installed(const QWidget *window)
{
    return window ? window->findChild<TouchBar *>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

QEvent::Type TouchBar::installedEvent()
{
    static const int type = QEvent::registerEventType();
    return QEvent::Type(type);
}

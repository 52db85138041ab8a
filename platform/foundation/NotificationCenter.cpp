#include "platform/foundation/NotificationCenter.h"

#include "platform/foundation/Perform.h"

#include <algorithm>

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

void NotificationCenter::addObserver(QObject *observer, const Selector &selector,
                                     const QString &name, QObject *object)
{
    if (!observer || selector.isEmpty())
        return;
    std::erase_if(m_registrations, [](const Registration &each) { return each.isGone(); });
    m_registrations.push_back({++m_lastId, observer, selector, name, object, !object});
}

void NotificationCenter::removeObserver(QObject *observer, const QString &name, QObject *object)
{
    std::erase_if(m_registrations, [&](const Registration &each) {
        return each.isGone()
            || (each.observer == observer && (name.isNull() || each.name == name)
                && (!object || each.object == object));
    });
}

const NotificationCenter::Registration *NotificationCenter::find(quint64 id) const
{
    const auto found = std::find_if(m_registrations.begin(), m_registrations.end(),
                                    [id](const Registration &each) { return each.id == id; });
    return found == m_registrations.end() ? nullptr : &*found;
}

void NotificationCenter::post(const QString &name, QObject *object, const Dictionary &userInfo)
{
    // By number, because any observer may change the registrations while it is called.
    std::vector<quint64> interested;
    for (const Registration &each : m_registrations) {
        if (!each.isGone() && (each.name.isNull() || each.name == name)
            && (each.fromAnyObject || each.object == object)) {
            interested.push_back(each.id);
        }
    }
    const Notification notification{name, object, userInfo};
    for (const quint64 id : interested) {
        const Registration *each = find(id);
        if (!each || !each->observer)
            continue;
        const Selector selector = each->selector;
        perform::sendQuietly(each->observer, selector, {QVariant::fromValue(notification)});
    }
}

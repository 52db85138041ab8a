#include "host/SharedObjects.h"

#include "platform/foundation/MainThread.h"

#include <QCoreApplication>

void SharedObjects::set(const QString &name, QObject *object)
{
    if (name.isNull())
        return;
    if (qApp && !MainThread::isCurrent())
        return MainThread::runAndWait([&] { set(name, object); });
    auto objects = m_objects.latest();
    objects.removeIf([](const auto &entry) { return entry.value().isNull(); });
    if (object)
        objects.insert(name, object);
    else
        objects.remove(name);
    m_objects.replace(std::move(objects));
}

QObject *SharedObjects::object(const QString &name) const
{
    return m_objects.read(
        [&](const auto &objects) -> QObject * { return objects.value(name).data(); });
}

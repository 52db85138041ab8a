#include "platform/ui/ApplicationDelegate.h"

#include <QPointer>

namespace {

QPointer<QObject> &current()
{
    static QPointer<QObject> delegate;
    return delegate;
}

} // namespace

QObject *applicationDelegate()
{
    return current();
}

void setApplicationDelegate(QObject *delegate)
{
    current() = delegate;
}

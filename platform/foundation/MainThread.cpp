#include "platform/foundation/MainThread.h"

#include <QCoreApplication>
#include <QThread>

namespace MainThread {

bool isCurrent()
{
    return qApp && QThread::currentThread() == qApp->thread();
}

void runAndWait(const std::function<void()> &work)
{
    if (isCurrent())
        work();
    else if (qApp)
        QMetaObject::invokeMethod(qApp, work, Qt::BlockingQueuedConnection);
}

void runLater(std::function<void()> work)
{
    if (qApp)
        QMetaObject::invokeMethod(qApp, std::move(work), Qt::QueuedConnection);
}

} // namespace MainThread

#include "platform/foundation/MainThread.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QSemaphore>
#include <QThread>

#include <atomic>
#include <memory>

namespace MainThread {

namespace {

std::atomic<bool> isClosed = false;

/// Work of a waiting thread. Whoever takes it first decides: the main thread to do it, or the
/// waiting thread to do without.
struct Errand
{
    std::function<void()> work;
    std::atomic<bool> isTaken = false;
    std::atomic<bool> isDone = false;
    QSemaphore done; ///< ends the wait
};

constexpr int lookUp = 50; // milliseconds between two looks at whether the loop has ended

} // namespace

bool isCurrent()
{
    return qApp && QThread::currentThread() == qApp->thread();
}

void runAndWait(const std::function<void()> &work)
{
    if (isCurrent()) {
        work();
        return;
    }
    if (!qApp || isClosed)
        return;
    const auto errand = std::make_shared<Errand>();
    errand->work = work;
    runLater([errand] {
        const auto goOn = qScopeGuard([&] {
            errand->isDone = true;
            errand->done.release();
        });
        if (!errand->isTaken.exchange(true))
            errand->work();
    });
    while (!errand->isDone) {
        errand->done.tryAcquire(1, lookUp);
        if (isClosed && !errand->isTaken.exchange(true))
            return;
    }
}

void runLater(std::function<void()> work)
{
    if (qApp)
        QMetaObject::invokeMethod(qApp, std::move(work), Qt::QueuedConnection);
}

void close()
{
    isClosed = true;
}

} // namespace MainThread

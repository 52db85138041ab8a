#include "plugins/common/BackgroundJobs.h"

#include <QObject>
#include <QThread>

#include <system_error>
#include <thread>

/// Where results arrive. Shared with the threads, so that a late one still finds it.
class BackgroundJobs::Receiver : public QObject
{
public:
    /// The last holder may be a job's thread, which must not delete what lives on the main one.
    static void dispose(Receiver *receiver)
    {
        if (receiver->thread() == QThread::currentThread())
            delete receiver;
        else
            receiver->deleteLater();
    }

    BackgroundJobs *jobs = nullptr; ///< null once nobody waits; main thread only
};

BackgroundJobs::BackgroundJobs()
    : m_receiver(new Receiver, Receiver::dispose)
{
    m_receiver->jobs = this;
}

BackgroundJobs::~BackgroundJobs()
{
    m_receiver->jobs = nullptr;
}

bool BackgroundJobs::start(const QString &lane, Job job)
{
    if (m_lanes.contains(lane))
        return false;
    auto run = [receiver = m_receiver, lane, job = std::move(job)] {
        auto deliver = [receiver = receiver.get(), lane, result = job()] {
            if (!receiver->jobs)
                return;
            receiver->jobs->m_lanes.remove(lane);
            result();
        };
        QMetaObject::invokeMethod(receiver.get(), std::move(deliver), Qt::QueuedConnection);
    };
    try {
        std::thread(std::move(run)).detach();
    } catch (const std::system_error &) {
        return false;
    }
    m_lanes.insert(lane);
    return true;
}

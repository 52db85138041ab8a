#pragma once

#include <QSet>
#include <QString>

#include <functional>
#include <memory>

/// Runs jobs that may never come back, such as asking a file server that is gone for its free
/// space.
///
/// Every job has a thread of its own that is never waited for: neither a tick nor the end of the
/// program stands still because of one. Main thread only.
class BackgroundJobs
{
public:
    /// Runs on the job's thread; what it returns is run on the main thread.
    using Job = std::function<std::function<void()>()>;

    BackgroundJobs();
    /// Jobs under way go on, but their results are dropped.
    ~BackgroundJobs();
    BackgroundJobs(const BackgroundJobs &) = delete;
    BackgroundJobs &operator=(const BackgroundJobs &) = delete;

    /// Starts the job.
    /// @param lane names the job's subject. A lane holds one job at a time, so what hangs never
    ///        piles up.
    /// @return false when the lane's last job is still under way, or no thread could be had.
    bool start(const QString &lane, Job job);

    bool isBusy(const QString &lane) const { return m_lanes.contains(lane); }

private:
    class Receiver;

    QSet<QString> m_lanes;
    std::shared_ptr<Receiver> m_receiver;
};

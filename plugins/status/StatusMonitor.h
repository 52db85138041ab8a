#pragma once

#include "plugins/common/BackgroundJobs.h"

#include "LoadMeter.h"
#include "MemoryMeter.h"
#include "SystemFacts.h"
#include "Volumes.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/// What changes from tick to tick; a part is missing when the kernel does not tell it.
struct LiveReading
{
    std::optional<double> load; ///< 0 to 1; missing as well in the first reading after a start
    std::optional<MemoryReading> memory;
    std::optional<quint64> uptime; ///< seconds
};

/// Reads the machine's figures again and again while started, and does nothing at all otherwise.
///
/// Reading happens off the main thread, each volume for itself, so that a server that is gone holds
/// up neither the window nor the other figures. Main thread only, signals too.
class StatusMonitor : public QObject
{
    Q_OBJECT

public:
    /// @param core the host, for what it tells of the machine; null for none.
    /// @param root folder that stands for "/" in the kernel's and the distribution's files.
    explicit StatusMonitor(mndCore *core, QString root = {});

    /// Reads everything at once and then goes on. Nothing happens when it is started already.
    void start();
    /// From here on no timer runs and no signal is sent.
    void stop();
    bool isRunning() const { return m_timer.isActive(); }

    static constexpr int interval = 2000; ///< milliseconds between two live readings
    static constexpr int volumeTicks = 5; ///< live readings between two readings of the volumes

Q_SIGNALS:
    void factsRead(const SystemFacts &facts);
    /// @param pause whether so much time passed since the last reading that it no longer connects.
    void liveRead(const LiveReading &reading, bool pause);
    /// The volumes there are now; their usage follows one by one.
    void volumesRead(const std::vector<Volume> &volumes);
    void usageRead(const QString &path, const std::optional<VolumeUsage> &usage);
    /// The volume has not answered since it was asked last.
    void volumeSilent(const QString &path);

private:
    void tick();
    void readEverything();
    void readLive();
    void readVolumes();
    void takeLive(const std::optional<ProcessorTimes> &times, LiveReading reading);
    void takeVolumes(const std::vector<Volume> &volumes);

    mndCore *const m_core;
    QString m_root;
    QTimer m_timer;
    int m_ticks = 0;
    QElapsedTimer m_lastLive;
    std::optional<ProcessorTimes> m_lastTimes;
    BackgroundJobs m_jobs; // last, so that no result arrives at a half-destroyed monitor
};

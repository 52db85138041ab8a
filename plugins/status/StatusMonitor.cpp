#include "StatusMonitor.h"

#include "ReadFile.h"
#include "Uptime.h"

using namespace Qt::StringLiterals;

namespace {

/// The load needs two readings; the second one need not keep the user waiting for a whole interval.
constexpr int firstInterval = 400;

} // namespace

StatusMonitor::StatusMonitor(mndCore *core, QString root)
    : m_core(core)
    , m_root(std::move(root))
{
    connect(&m_timer, &QTimer::timeout, this, &StatusMonitor::tick);
}

void StatusMonitor::start()
{
    if (isRunning())
        return;
    m_ticks = 0;
    m_lastTimes.reset();
    m_timer.start(firstInterval);
    readEverything();
}

void StatusMonitor::readEverything()
{
    m_jobs.start(u"facts"_s, [this, root = m_root, known = hostFacts(m_core)] {
        return [this, facts = readSystemFacts(root, known)] {
            if (isRunning())
                Q_EMIT factsRead(facts);
        };
    });
    readLive();
    readVolumes();
}

void StatusMonitor::stop()
{
    m_timer.stop();
}

void StatusMonitor::tick()
{
    m_timer.setInterval(interval);
    readLive();
    if (++m_ticks % volumeTicks == 0)
        readVolumes();
}

void StatusMonitor::readLive()
{
    m_jobs.start(u"live"_s, [this, proc = m_root + u"/proc/"_s]() -> std::function<void()> {
        LiveReading reading;
        reading.memory = parseMemory(readFile(proc + u"meminfo"_s));
        reading.uptime = parseUptime(readFile(proc + u"uptime"_s));
        const auto times = parseProcessorTimes(readFile(proc + u"stat"_s));
        return [this, times, reading] { takeLive(times, reading); };
    });
}

void StatusMonitor::takeLive(const std::optional<ProcessorTimes> &times, LiveReading reading)
{
    if (!isRunning())
        return;
    if (times && m_lastTimes)
        reading.load = loadBetween(*m_lastTimes, *times);
    m_lastTimes = times;
    const bool pause = !m_lastLive.isValid() || m_lastLive.hasExpired(3 * interval);
    m_lastLive.start();
    Q_EMIT liveRead(reading, pause);
}

void StatusMonitor::readVolumes()
{
    m_jobs.start(u"volumes"_s, [this, path = m_root + u"/proc/self/mountinfo"_s] {
        return [this, volumes = parseVolumes(readFile(path))] { takeVolumes(volumes); };
    });
}

void StatusMonitor::takeVolumes(const std::vector<Volume> &volumes)
{
    if (!isRunning())
        return;
    Q_EMIT volumesRead(volumes);
    for (const Volume &volume : volumes) {
        const QString lane = u"volume:"_s + volume.path;
        if (m_jobs.isBusy(lane)) {
            Q_EMIT volumeSilent(volume.path);
            continue;
        }
        m_jobs.start(lane, [this, path = volume.path] {
            return [this, path, usage = readUsage(path)] {
                if (isRunning())
                    Q_EMIT usageRead(path, usage);
            };
        });
    }
}

#include "LoadMeter.h"

#include <QList>

#include <algorithm>

std::optional<ProcessorTimes> parseProcessorTimes(const QByteArray &stat)
{
    const QByteArray line = stat.split('\n').first().simplified();
    const QList<QByteArray> fields = line.split(' ');
    if (fields.size() < 5 || fields[0] != "cpu")
        return std::nullopt;
    // user nice system idle iowait irq softirq steal; guest times are in user and nice already.
    constexpr qsizetype counted = 8;
    ProcessorTimes times;
    for (qsizetype i = 1; i < fields.size() && i <= counted; ++i) {
        bool ok = false;
        const quint64 ticks = fields[i].toULongLong(&ok);
        if (!ok)
            return std::nullopt;
        times.total += ticks;
        const bool waits = i == 4 || i == 5;
        times.busy += waits ? 0 : ticks;
    }
    return times;
}

std::optional<double> loadBetween(const ProcessorTimes &earlier, const ProcessorTimes &later)
{
    if (later.total <= earlier.total)
        return std::nullopt;
    // The kernel's waiting time may run backwards a little, so the busy share may seem to as well.
    const double busy = double(later.busy) - double(earlier.busy);
    return std::clamp(busy / double(later.total - earlier.total), 0.0, 1.0);
}

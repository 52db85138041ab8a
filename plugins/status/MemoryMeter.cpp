#include "MemoryMeter.h"

#include <QList>

#include <algorithm>

namespace {

/// The bytes of a line such as "MemTotal:       24683620 kB".
std::optional<quint64> field(const QByteArray &meminfo, const QByteArray &name)
{
    for (const QByteArray &line : meminfo.split('\n')) {
        if (!line.startsWith(name + ':'))
            continue;
        bool ok = false;
        const QByteArray number = line.mid(name.size() + 1).trimmed();
        const quint64 kilobytes = number.split(' ').first().toULongLong(&ok);
        if (ok)
            return kilobytes * 1024;
    }
    return std::nullopt;
}

} // namespace

std::optional<MemoryReading> parseMemory(const QByteArray &meminfo)
{
    const auto total = field(meminfo, "MemTotal");
    if (!total || *total == 0)
        return std::nullopt;
    const quint64 free = std::min(field(meminfo, "MemFree").value_or(0), *total);
    // Kernels before 3.14 do not estimate what is available, and some containers give more than
    // there is; `free` takes the free memory then.
    quint64 available = field(meminfo, "MemAvailable").value_or(0);
    if (available == 0 || available > *total)
        available = free;
    return MemoryReading{*total, available, *total - available};
}

#pragma once

#include <QByteArray>

#include <optional>

/// Time that all processors together have spent since the machine started, in clock ticks.
struct ProcessorTimes
{
    quint64 busy = 0; ///< neither idle nor waiting for a disk
    quint64 total = 0;
};

/// @param stat the text of /proc/stat.
std::optional<ProcessorTimes> parseProcessorTimes(const QByteArray &stat);

/// The share of busy time between two readings, 0 to 1; nothing when no time passed between them.
std::optional<double> loadBetween(const ProcessorTimes &earlier, const ProcessorTimes &later);

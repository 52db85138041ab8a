#pragma once

#include <QByteArray>

#include <optional>

/// Main memory in bytes, by the arithmetic of `free` (procps 4): used is what is not available.
struct MemoryReading
{
    quint64 total = 0;
    quint64 available = 0;
    quint64 used = 0;
};

/// @param meminfo the text of /proc/meminfo.
/// @return nothing when it does not tell the total.
std::optional<MemoryReading> parseMemory(const QByteArray &meminfo);

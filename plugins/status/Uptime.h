#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

/// Whole seconds since the machine started.
/// @param uptime the text of /proc/uptime.
inline std::optional<quint64> parseUptime(const QByteArray &uptime)
{
    bool ok = false;
    const double seconds = uptime.simplified().split(' ').first().toDouble(&ok);
    if (!ok || !(seconds >= 0 && seconds < 1e12))
        return std::nullopt;
    return quint64(seconds);
}

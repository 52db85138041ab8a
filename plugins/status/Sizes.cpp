#include "Sizes.h"

#include <QLocale>

using namespace Qt::StringLiterals;

QString sizeText(quint64 bytes, const Texts &texts)
{
    constexpr double megabyte = 1024.0 * 1024.0;
    const auto number = [](double value) { return QStringList{QLocale().toString(value, 'f', 1)}; };
    const double megabytes = double(bytes) / megabyte;
    // The limits are where the smaller unit would round to 1024.0.
    if (megabytes < 1023.95)
        return texts(u"SZ_STATUS_MB"_s, u"%1 MB"_s, number(megabytes));
    if (megabytes / 1024 < 1023.95)
        return texts(u"SZ_STATUS_GB"_s, u"%1 GB"_s, number(megabytes / 1024));
    return texts(u"SZ_STATUS_TB"_s, u"%1 TB"_s, number(megabytes / 1024 / 1024));
}

QString percentText(int percent, const Texts &texts)
{
    return texts(u"SZ_STATUS_PERCENT"_s, u"%1%"_s, {QLocale().toString(percent)});
}

QString durationText(quint64 seconds, const Texts &texts)
{
    const auto number = [](quint64 value) { return QLocale().toString(value); };
    const quint64 minutes = seconds / 60;
    const quint64 hours = minutes / 60;
    const quint64 days = hours / 24;
    if (days > 0)
        return texts(u"SZ_STATUS_DAYS_HOURS"_s, u"%1 d %2 h"_s, {number(days), number(hours % 24)});
    if (hours > 0)
        return texts(u"SZ_STATUS_HOURS_MINUTES"_s, u"%1 h %2 min"_s,
                     {number(hours), number(minutes % 60)});
    return texts(u"SZ_STATUS_MINUTES"_s, u"%1 min"_s, {number(minutes)});
}

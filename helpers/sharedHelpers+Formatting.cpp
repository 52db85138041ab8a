#include "helpers/DateUtilities.h"
#include "helpers/sharedHelpers.h"
#include "platform/foundation/DecimalNumber.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/SystemServices.h"
#include "plugin_host/mndCore.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// What a count of seconds is kept in. Dates can lie further back than that.
int secondsAgo(const Date &date)
{
    const double interval = Utilities::now().secondsSinceReference() - date.secondsSinceReference();
    // False for what is no number, too.
    if (!(interval > 0))
        return 0;
    return static_cast<int>(std::min(interval, 2147483647.0));
}

QString hostText(QObject *host, const QString &key, const QString &fallback)
{
    auto *core = qobject_cast<mndCore *>(host);
    return core ? core->stringResource(key, fallback) : fallback;
}

} // namespace

QString sharedHelpers::stringForNumber(const QVariant &number)
{
    return decimalNumber(number, systemServices().languages->locale());
}

QString sharedHelpers::stringForFileSize(quint64 size)
{
    if (size <= 1022)
        return format(u"%i bytes"_s, {size});
    // Single precision, and the unit changes at 1023: both show in the last digit of large sizes.
    constexpr float step = 1.0F / 1024;
    float inUnit = static_cast<float>(size) * step;
    if (inUnit < 1023.0F)
        return format(u"%1.1f KB"_s, {static_cast<double>(inUnit)});
    inUnit *= step;
    if (inUnit < 1023.0F)
        return format(u"%1.1f MB"_s, {static_cast<double>(inUnit)});
    inUnit *= step;
    return format(u"%1.1f GB"_s, {static_cast<double>(inUnit)});
}

int sharedHelpers::daysAgo(const Date &date)
{
    return secondsAgo(date) / 86400;
}

int sharedHelpers::minsAgo(const Date &date)
{
    return secondsAgo(date) / 60;
}

QString sharedHelpers::stringForDaysAgo(const Date &date)
{
    QObject *host = getCore();
    if (date.isAbsent())
        return hostText(host, u"SZ_NEVER"_s, u"Never"_s);
    const int days = daysAgo(date);
    if (Utilities::isToday(date))
        return hostText(host, u"SZ_TODAY"_s, u"Today"_s);
    if (Utilities::isYesterday(date))
        return hostText(host, u"SZ_YESTERDAY"_s, u"Yesterday"_s);
    if (days == 1)
        return hostText(host, u"SZ_ONE_DAY_AGO"_s, u"1 day ago"_s);
    return format(hostText(host, u"SZ_N_DAYS_AGO"_s, u"%d days ago"_s), {days});
}

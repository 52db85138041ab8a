#include "helpers/DateUtilities.h"

#include "platform/foundation/SystemServices.h"

#include <cmath>
#include <limits>

namespace {

constexpr quint64 minuteSeconds = 60;
constexpr quint64 hourSeconds = 3600;
constexpr quint64 daySeconds = 86400;
constexpr double weekSeconds = 604800;

Date moved(const Date &date, double seconds)
{
    return date.isAbsent() ? Date() : Date(date.secondsSinceReference() + seconds);
}

Date added(const Date &date, quint64 count, quint64 unit)
{
    return moved(date, static_cast<double>(count * unit));
}

Date beforeNow(quint64 count, quint64 unit)
{
    return moved(Utilities::now(), -static_cast<double>(count * unit));
}

qint64 wholeUnits(const Date &from, const Date &to, quint64 unit)
{
    if (from.isAbsent() || to.isAbsent())
        return 0;
    using Limits = std::numeric_limits<qint64>;
    const double units =
        (to.secondsSinceReference() - from.secondsSinceReference()) / static_cast<double>(unit);
    if (units >= 0x1p63)
        return Limits::max();
    if (units < -0x1p63)
        return Limits::min();
    return std::isnan(units) ? 0 : static_cast<qint64>(units);
}

int component(const Date &date, int DateComponents::*which)
{
    return Utilities::currentCalendar().components(date).*which;
}

bool isInYear(const Date &date, int yearsFromNow)
{
    if (date.isAbsent())
        return false;
    const Calendar calendar = Utilities::currentCalendar();
    return calendar.components(date).year
        == calendar.components(Utilities::now()).year + yearsFromNow;
}

} // namespace

namespace Utilities {

Date now()
{
    const qint64 milliseconds = systemServices().clock->now().toMSecsSinceEpoch();
    return Date(static_cast<double>(milliseconds) / 1000 - Date::referenceSinceEpoch);
}

Calendar currentCalendar()
{
    return Calendar(systemServices().languages->locale());
}

Date dateWithDaysFromNow(quint64 days)
{
    return added(now(), days, daySeconds);
}
Date dateWithDaysBeforeNow(quint64 days)
{
    return beforeNow(days, daySeconds);
}
Date dateWithHoursFromNow(quint64 hours)
{
    return added(now(), hours, hourSeconds);
}
Date dateWithHoursBeforeNow(quint64 hours)
{
    return beforeNow(hours, hourSeconds);
}
Date dateWithMinutesFromNow(quint64 minutes)
{
    return added(now(), minutes, minuteSeconds);
}
Date dateWithMinutesBeforeNow(quint64 minutes)
{
    return beforeNow(minutes, minuteSeconds);
}
Date dateTomorrow()
{
    return dateWithDaysFromNow(1);
}
Date dateYesterday()
{
    return dateWithDaysBeforeNow(1);
}

bool isEqualToDateIgnoringTime(const Date &date, const Date &other)
{
    if (date.isAbsent() || other.isAbsent())
        return false;
    const Calendar calendar = currentCalendar();
    const DateComponents a = calendar.components(date);
    const DateComponents b = calendar.components(other);
    return a.year == b.year && a.month == b.month && a.day == b.day;
}
bool isToday(const Date &date)
{
    return isEqualToDateIgnoringTime(date, now());
}
bool isTomorrow(const Date &date)
{
    return isEqualToDateIgnoringTime(date, dateTomorrow());
}
bool isYesterday(const Date &date)
{
    return isEqualToDateIgnoringTime(date, dateYesterday());
}

bool isSameWeekAsDate(const Date &date, const Date &other)
{
    if (date.isAbsent() || other.isAbsent())
        return false;
    const Calendar calendar = currentCalendar();
    const double apart = std::fabs(date.secondsSinceReference() - other.secondsSinceReference());
    return calendar.components(date).week == calendar.components(other).week
        && std::trunc(apart) < weekSeconds;
}
bool isThisWeek(const Date &date)
{
    return isSameWeekAsDate(date, now());
}
bool isNextWeek(const Date &date)
{
    return isSameYearAsDate(date, moved(now(), weekSeconds));
}
bool isLastWeek(const Date &date)
{
    return isSameYearAsDate(date, moved(now(), -weekSeconds));
}

bool isSameYearAsDate(const Date &date, const Date &other)
{
    if (date.isAbsent() || other.isAbsent())
        return false;
    const Calendar calendar = currentCalendar();
    return calendar.components(date).year == calendar.components(other).year;
}
bool isThisYear(const Date &date)
{
    return isInYear(date, 0);
}
bool isNextYear(const Date &date)
{
    return isInYear(date, 1);
}
bool isLastYear(const Date &date)
{
    return isInYear(date, -1);
}

bool isEarlierThanDate(const Date &date, const Date &other)
{
    return !date.isAbsent() && !other.isAbsent()
        && date.secondsSinceReference() <= other.secondsSinceReference();
}
bool isLaterThanDate(const Date &date, const Date &other)
{
    return !date.isAbsent() && !other.isAbsent()
        && date.secondsSinceReference() >= other.secondsSinceReference();
}

Date dateByAddingDays(const Date &date, quint64 days)
{
    return added(date, days, daySeconds);
}
Date dateByAddingHours(const Date &date, quint64 hours)
{
    return added(date, hours, hourSeconds);
}
Date dateByAddingMinutes(const Date &date, quint64 minutes)
{
    return added(date, minutes, minuteSeconds);
}
Date dateBySubtractingDays(const Date &date, quint64 days)
{
    return dateByAddingDays(date, 0 - days);
}
Date dateBySubtractingHours(const Date &date, quint64 hours)
{
    return dateByAddingHours(date, 0 - hours);
}
Date dateBySubtractingMinutes(const Date &date, quint64 minutes)
{
    return dateByAddingMinutes(date, 0 - minutes);
}

Date dateAtStartOfDay(const Date &date)
{
    if (date.isAbsent())
        return {};
    const Calendar calendar = currentCalendar();
    DateComponents components = calendar.components(date);
    components.hour = components.minute = components.second = 0;
    return calendar.date(components);
}

DateComponents componentsWithOffsetFromDate(const Date &date, const Date &other)
{
    return currentCalendar().difference(other, date);
}

qint64 minutesAfterDate(const Date &date, const Date &other)
{
    return wholeUnits(other, date, minuteSeconds);
}
qint64 minutesBeforeDate(const Date &date, const Date &other)
{
    return wholeUnits(date, other, minuteSeconds);
}
qint64 hoursAfterDate(const Date &date, const Date &other)
{
    return wholeUnits(other, date, hourSeconds);
}
qint64 hoursBeforeDate(const Date &date, const Date &other)
{
    return wholeUnits(date, other, hourSeconds);
}
qint64 daysAfterDate(const Date &date, const Date &other)
{
    return wholeUnits(other, date, daySeconds);
}
qint64 daysBeforeDate(const Date &date, const Date &other)
{
    return wholeUnits(date, other, daySeconds);
}

int nearestHour(const Date &)
{
    return component(moved(now(), 1800), &DateComponents::hour);
}
int hour(const Date &date)
{
    return component(date, &DateComponents::hour);
}
int minute(const Date &date)
{
    return component(date, &DateComponents::minute);
}
int seconds(const Date &date)
{
    return component(date, &DateComponents::second);
}
int day(const Date &date)
{
    return component(date, &DateComponents::day);
}
int month(const Date &date)
{
    return component(date, &DateComponents::month);
}
int week(const Date &date)
{
    return component(date, &DateComponents::week);
}
int weekday(const Date &date)
{
    return component(date, &DateComponents::weekday);
}
int nthWeekday(const Date &date)
{
    return component(date, &DateComponents::weekdayOrdinal);
}
int year(const Date &date)
{
    return component(date, &DateComponents::year);
}

} // namespace Utilities

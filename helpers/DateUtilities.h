#pragma once

#include "platform/foundation/Calendar.h"
#include "platform/foundation/Date.h"

/// What dates can be asked, by the clock, the calendar and the time zone of the user. Any thread.
///
/// A day, an hour and a minute of the arithmetic are 86400, 3600 and 60 seconds, whatever the
/// clocks do. Where a date is absent, the answer is absent, false or 0. Moments that no calendar
/// reaches are compared as Calendar says.
namespace Utilities {

/// A count times its unit is taken modulo 2^64 seconds.
Date dateWithDaysFromNow(quint64 days);
Date dateWithDaysBeforeNow(quint64 days);
Date dateWithHoursFromNow(quint64 hours);
Date dateWithHoursBeforeNow(quint64 hours);
Date dateWithMinutesFromNow(quint64 minutes);
Date dateWithMinutesBeforeNow(quint64 minutes);
Date dateTomorrow();
Date dateYesterday();

bool isEqualToDateIgnoringTime(const Date &date, const Date &other);
bool isToday(const Date &date);
bool isTomorrow(const Date &date);
bool isYesterday(const Date &date);
/// The same number of the week, and less than 604800 whole seconds apart.
bool isSameWeekAsDate(const Date &date, const Date &other);
bool isThisWeek(const Date &date);
/// Whether the date is in the same *year* as the moment a week from now, or a week ago.
bool isNextWeek(const Date &date);
bool isLastWeek(const Date &date);
bool isSameYearAsDate(const Date &date, const Date &other);
bool isThisYear(const Date &date);
bool isNextYear(const Date &date);
bool isLastYear(const Date &date);
/// Of two equal dates the first is both the earlier and the later.
bool isEarlierThanDate(const Date &date, const Date &other);
bool isLaterThanDate(const Date &date, const Date &other);

Date dateByAddingDays(const Date &date, quint64 days);
Date dateByAddingHours(const Date &date, quint64 hours);
Date dateByAddingMinutes(const Date &date, quint64 minutes);
/// Add the count's negative modulo 2^64: any count but 0 leads about 1.8e19 seconds into the
/// future.
Date dateBySubtractingDays(const Date &date, quint64 days);
Date dateBySubtractingHours(const Date &date, quint64 hours);
Date dateBySubtractingMinutes(const Date &date, quint64 minutes);
/// The first moment of the day.
Date dateAtStartOfDay(const Date &date);

/// From the other date to this one, as Calendar::difference().
DateComponents componentsWithOffsetFromDate(const Date &date, const Date &other);
/// Whole units, cut towards zero, and kept within 64 bits.
qint64 minutesAfterDate(const Date &date, const Date &other);
qint64 minutesBeforeDate(const Date &date, const Date &other);
qint64 hoursAfterDate(const Date &date, const Date &other);
qint64 hoursBeforeDate(const Date &date, const Date &other);
qint64 daysAfterDate(const Date &date, const Date &other);
qint64 daysBeforeDate(const Date &date, const Date &other);

/// The hour that is nearest to the current time, whatever the date is.
int nearestHour(const Date &date);
int hour(const Date &date);
int minute(const Date &date);
int seconds(const Date &date);
int day(const Date &date);
int month(const Date &date);
int week(const Date &date);
int weekday(const Date &date);
int nthWeekday(const Date &date);
int year(const Date &date);

/// The clock's time.
Date now();
/// The calendar of the user's locale.
Calendar currentCalendar();

} // namespace Utilities

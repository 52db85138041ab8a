#include "helpers/DateUtilities.h"

#include "helpers/TimeZoneScope.h"
#include "support/TestServices.h"

using namespace Utilities;

// By UTC where the text ends with Z, else by local time.
static Date at(const QString &text)
{
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return Date(double(time.toSecsSinceEpoch()) - Date::referenceSinceEpoch);
}

static QString written(const DateComponents &c)
{
    QStringList parts;
    for (int part :
         {c.year, c.month, c.day, c.hour, c.minute, c.second, c.week, c.weekday, c.weekdayOrdinal})
        parts << QString::number(part);
    return parts.join(u' ');
}

static DateComponents componentsOf(const Date &date)
{
    return {year(date),    month(date), day(date),     hour(date),      minute(date),
            seconds(date), week(date),  weekday(date), nthWeekday(date)};
}

TEST(DateUtilities, ComponentsFollowLocaleAndZone)
{
    const std::tuple<QString, QByteArray, QString, QString> cases[] = {
        // Year, month, day, hour, minute, second, week, weekday, its ordinal.
        // Both sides of a clock put forward, and of one put back.
        {u"de_DE"_s, "Europe/Berlin", u"2024-03-31T00:59:59Z"_s, u"2024 3 31 1 59 59 13 1 5"_s},
        {u"de_DE"_s, "Europe/Berlin", u"2024-03-31T01:00:00Z"_s, u"2024 3 31 3 0 0 13 1 5"_s},
        {u"en_US"_s, "America/New_York", u"2024-11-03T05:30:00Z"_s, u"2024 11 3 1 30 0 45 1 1"_s},
        {u"en_US"_s, "America/New_York", u"2024-11-03T06:30:00Z"_s, u"2024 11 3 1 30 0 45 1 1"_s},
        // The turn of the year.
        {u"de_DE"_s, "Europe/Berlin", u"2020-12-31T23:00:00Z"_s, u"2021 1 1 0 0 0 53 6 1"_s},
        {u"en_US"_s, "America/New_York", u"2021-01-01T04:59:59Z"_s, u"2020 12 31 23 59 59 1 5 5"_s},
        {u"de_DE"_s, "Europe/Berlin", u"2024-12-30T12:00:00Z"_s, u"2024 12 30 13 0 0 1 2 5"_s},
        // One Saturday, three weeks.
        {u"de_DE"_s, "Europe/Berlin", u"2021-01-02T11:00:00Z"_s, u"2021 1 2 12 0 0 53 7 1"_s},
        {u"en_US"_s, "Europe/Berlin", u"2021-01-02T11:00:00Z"_s, u"2021 1 2 12 0 0 1 7 1"_s},
        {u"ar_EG"_s, "Europe/Berlin", u"2021-01-02T11:00:00Z"_s, u"2021 1 2 12 0 0 2 7 1"_s},
        // Other calendars, a rule instead of a zone's name, a moment before the reference date.
        {u"th_TH"_s, "Asia/Bangkok", u"2024-02-29T00:00:00Z"_s, u"2567 2 29 7 0 0 9 5 5"_s},
        {u"fa_IR"_s, "Asia/Tehran", u"2024-03-20T12:00:00Z"_s, u"1403 1 1 15 30 0 1 4 1"_s},
        {u"en_US"_s, "ABC-3", u"1969-12-31T21:00:00Z"_s, u"1970 1 1 0 0 0 1 5 1"_s},
    };
    TestServices test;
    for (const auto &[locale, zone, text, components] : cases) {
        TimeZoneScope scope(zone);
        test.locale = QLocale(locale);
        const Date date = at(text);
        EXPECT_EQ(written(componentsOf(date)), components) << text.toStdString();
        const Date back = currentCalendar().date(componentsOf(date));
        EXPECT_TRUE(back == date || text == u"2024-11-03T06:30:00Z"_s) << text.toStdString();
    }
}

TEST(DateUtilities, StartOfDayIsItsFirstMoment)
{
    const std::tuple<QByteArray, QString, QString> cases[] = {
        {"Europe/Berlin", u"2024-03-31T20:00:00Z"_s, u"2024-03-30T23:00:00Z"_s},
        {"Europe/Berlin", u"2024-10-27T20:00:00Z"_s, u"2024-10-26T22:00:00Z"_s},
        {"America/Sao_Paulo", u"2018-11-04T12:00:00Z"_s, u"2018-11-04T03:00:00Z"_s}, // 01:00
        {"America/Havana", u"2024-11-03T12:00:00Z"_s, u"2024-11-03T04:00:00Z"_s},    // twice
    };
    TestServices test;
    for (const auto &[zone, date, start] : cases) {
        TimeZoneScope scope(zone);
        EXPECT_EQ(dateAtStartOfDay(at(date)), at(start)) << date.toStdString();
    }
}

TEST(DateUtilities, OffsetsAreCalendarDifferences)
{
    const std::tuple<QString, QString, QString> cases[] = {
        {u"2024-03-30T12:00"_s, u"2024-03-31T12:00"_s, u"0 0 1 0 0 0 0 0 0"_s}, // 23 hours
        {u"2024-10-26T12:00"_s, u"2024-10-27T11:00"_s, u"0 0 0 24 0 0 0 0 0"_s},
        {u"2024-01-31T00:00"_s, u"2024-03-01T00:00"_s, u"0 1 1 0 0 0 0 0 0"_s},
        {u"2022-11-01T10:00"_s, u"2024-12-20T11:02:03"_s, u"2 1 5 1 2 3 2 0 0"_s},
        {u"2024-12-20T11:02:03"_s, u"2022-11-01T10:00"_s, u"-2 -1 -5 -1 -2 -3 -2 0 0"_s},
    };
    TimeZoneScope zone("Europe/Berlin");
    TestServices test;
    for (const auto &[from, to, difference] : cases)
        EXPECT_EQ(written(componentsWithOffsetFromDate(at(to), at(from))), difference)
            << from.toStdString();
}

TEST(DateUtilities, DaysWeeksAndYearsAroundNow)
{
    TimeZoneScope zone("Europe/Berlin");
    TestServices test;
    test.locale = QLocale(u"de_DE"_s);
    using Question = bool (*)(const Date &);
    const std::tuple<QString, Question, QString, bool> cases[] = {
        {u"2024-06-10T10:00"_s, isTomorrow, u"2024-06-11T23:59"_s, true},
        {u"2024-06-10T10:00"_s, isTomorrow, u"2024-06-12T00:00"_s, false},
        // A day is 86400 seconds, also across the 25 hours of this one: still the same date.
        {u"2024-10-27T00:30"_s, isTomorrow, u"2024-10-27T12:00"_s, true},
        {u"2024-06-10T10:00"_s, isThisWeek, u"2024-06-16T23:59"_s, true},
        {u"2024-06-10T10:00"_s, isThisWeek, u"2024-06-09T23:59"_s, false},
        {u"2024-06-10T10:00"_s, isThisWeek, u"2023-06-06T10:00"_s, false}, // week 23, not 24
        {u"2024-01-01T10:00"_s, isThisWeek, u"2025-01-01T10:00"_s, false}, // week 1 of both
        // The year is tested, not the week.
        {u"2024-06-10T10:00"_s, isNextWeek, u"2024-09-10T10:00"_s, true},
        {u"2024-12-28T10:00"_s, isNextWeek, u"2024-12-29T10:00"_s, false},
        {u"2024-06-10T10:00"_s, isLastWeek, u"2024-12-31T10:00"_s, true},
        {u"2024-01-03T10:00"_s, isLastWeek, u"2024-01-02T10:00"_s, false},
        {u"2024-06-10T10:00"_s, isThisYear, u"2024-01-01T00:00"_s, true},
        {u"2024-06-10T10:00"_s, isThisYear, u"2023-12-31T23:59"_s, false},
        {u"2024-06-10T10:00"_s, isNextYear, u"2025-12-31T23:59"_s, true},
        {u"2024-06-10T10:00"_s, isNextYear, u"2026-01-01T00:00"_s, false},
        {u"2024-06-10T10:00"_s, isLastYear, u"2023-01-01T00:00"_s, true},
        {u"2024-06-10T10:00"_s, isLastYear, u"2024-06-10T10:00"_s, false},
        {u"2024-06-10T10:00"_s, isLastYear, u"2022-12-31T23:59"_s, false},
    };
    for (const auto &[now, question, date, answer] : cases) {
        test.now = QDateTime::fromString(now, Qt::ISODate);
        EXPECT_EQ(question(at(date)), answer) << qPrintable(now + u": "_s + date);
    }
    EXPECT_TRUE(isSameYearAsDate(at(u"2024-01-01T00:00"_s), at(u"2024-12-31T23:59"_s)));
    EXPECT_FALSE(isSameYearAsDate(at(u"2023-12-31T23:59"_s), at(u"2024-01-01T00:00"_s)));
    for (const auto &[time, hour] :
         {std::pair(u"10:29"_s, 10), {u"10:31"_s, 11}, {u"23:40"_s, 0}}) {
        test.now = QDateTime::fromString(u"2024-06-10T"_s + time, Qt::ISODate);
        EXPECT_EQ(nearestHour(at(u"2001-01-01T04:00"_s)), hour);
    }
}

TEST(DateUtilities, ArithmeticIsFixedLengthModulo64Bits)
{
    TestServices test;
    test.now = QDateTime::fromString(u"2001-01-12T00:00:00Z"_s, Qt::ISODate);
    const double now = 11 * 86400.0;
    const Date date(1000);
    const quint64 wrapping = (1ULL << 63) / 86400 * 2 + 1; // times 86400 it is beyond 2^64
    const std::pair<Date, double> cases[] = {
        {dateWithDaysFromNow(2), now + 2 * 86400.0},
        {dateWithDaysBeforeNow(2), now - 2 * 86400.0},
        {dateWithHoursFromNow(2), now + 7200},
        {dateWithHoursBeforeNow(2), now - 7200},
        {dateWithMinutesFromNow(2), now + 120},
        {dateWithMinutesBeforeNow(2), now - 120},
        {dateTomorrow(), now + 86400},
        {dateYesterday(), now - 86400},
        {dateByAddingDays(date, 2), 173800},
        {dateByAddingHours(date, 2), 8200},
        {dateByAddingMinutes(date, 2), 1120},
        {dateByAddingDays(date, wrapping), 1000 + double(wrapping * 86400)},
        // The count is negated without a sign.
        {dateBySubtractingDays(date, 1), 1000 + (0x1p64 - 86400)},
        {dateBySubtractingHours(date, 1), 1000 + (0x1p64 - 3600)},
        {dateBySubtractingMinutes(date, 1), 1000 + (0x1p64 - 60)},
        {dateBySubtractingDays(date, 0), 1000},
        {dateByAddingDays(Date(), 1), 0},
    };
    for (const auto &[made, seconds] : cases)
        EXPECT_EQ(made.secondsSinceReference(), seconds);

    EXPECT_EQ(minutesAfterDate(Date(0), Date(90)), -1);
    EXPECT_EQ(minutesBeforeDate(Date(0), Date(90)), 1);
    EXPECT_EQ(hoursAfterDate(Date(7199.5), Date(0)), 1);
    EXPECT_EQ(hoursBeforeDate(Date(7200), Date(0)), -2);
    EXPECT_EQ(daysAfterDate(Date(172800), Date(0)), 2);
    EXPECT_EQ(daysBeforeDate(Date(-1e300), Date(1e300)), std::numeric_limits<qint64>::max());
    EXPECT_EQ(daysBeforeDate(Date(0), Date(std::nan(""))), 0);
    EXPECT_TRUE(isEarlierThanDate(Date(1), Date(1)) && isLaterThanDate(Date(1), Date(1)));
    EXPECT_TRUE(isEarlierThanDate(Date(1), Date(2)) && !isLaterThanDate(Date(1), Date(2)));
}

TEST(DateUtilities, FarAndAbsentDatesAreAnswered)
{
    TestServices test;
    const Date far[] = {dateBySubtractingDays(Date(0), 1), Date(-1e300), Date(INFINITY),
                        Date(std::nan(""))};
    for (const char *name : {"en_US", "th_TH", "fa_IR", "ar_SA", "am_ET", "ja_JP"}) {
        test.locale = QLocale(QString::fromLatin1(name));
        for (const Date &date : far) {
            EXPECT_GE(month(date), 1) << name;
            EXPECT_FALSE(dateAtStartOfDay(date).isAbsent());
            EXPECT_FALSE(isToday(date));
            componentsWithOffsetFromDate(date, Date(0));
        }
        const DateComponents span = componentsWithOffsetFromDate(far[0], far[1]);
        EXPECT_GT(span.year, 60000) << name;
        EXPECT_EQ(written(componentsWithOffsetFromDate(far[1], far[0])).left(2), u"-6"_s) << name;
    }
    EXPECT_FALSE(isToday(Date()) || isSameYearAsDate(Date(0), Date()) || isThisYear(Date()));
    EXPECT_FALSE(isEarlierThanDate(Date(-1), Date()) || isSameWeekAsDate(Date(), Date()));
    EXPECT_TRUE(dateAtStartOfDay(Date()).isAbsent() && dateByAddingDays(Date(), 1).isAbsent());
    EXPECT_EQ(componentsOf(Date()), DateComponents());
    EXPECT_EQ(daysAfterDate(Date(86400), Date()), 0);
}

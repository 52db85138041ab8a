#pragma once

#include "platform/foundation/Date.h"

#include <QLocale>

#include <memory>

/// A moment as the user's calendar writes it, or the difference of two. Years count within the
/// calendar's era: of 44 BC the year is 44.
struct DateComponents
{
    int year = 0;
    int month = 0; ///< 1 is the first
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int week = 0;           ///< of the year, by the first weekday and the first week of the locale
    int weekday = 0;        ///< 1 is Sunday, in every locale
    int weekdayOrdinal = 0; ///< 2 on the second Tuesday of a month

    friend bool operator==(const DateComponents &, const DateComponents &) = default;
};

/// The calendar that is usual where the locale is from (Gregorian, Buddhist, Persian, ...), in the
/// time zone of Qt's local time. Years change from Julian to Gregorian in 1582.
///
/// Moments more than 10^12 seconds (31,000 years) from the reference date count as the last one
/// within; what is no number counts as the reference date. Cheap to make; one thread at a time.
class Calendar
{
public:
    explicit Calendar(const QLocale &locale);
    ~Calendar();
    Calendar(Calendar &&) noexcept;
    Calendar &operator=(Calendar &&) noexcept;

    /// All zero for an absent date.
    DateComponents components(const Date &date) const;

    /// The moment in the current era that has the components from year to second; week, weekday and
    /// ordinal follow from them and are not looked at. Values beyond their range carry over. A time
    /// that the clock skips is as much later; of one that it repeats, the first. Absent when the
    /// calendar has no such moment.
    Date date(const DateComponents &components) const;

    /// What to add to one date to come to the other, in this order: whole years, then months, weeks
    /// (0 to 4), days (0 to 6), hours, minutes and seconds of the rest, all negative when the other
    /// is the earlier. Nothing is left for weekday and ordinal: they are 0. All zero when a date is
    /// absent.
    DateComponents difference(const Date &from, const Date &to) const;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

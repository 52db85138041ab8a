#include "platform/foundation/Calendar.h"

#include "platform/foundation/IcuLocale.h"
#include "platform/foundation/IcuTimeZone.h"

#include <unicode/calendar.h>

#include <cmath>

namespace {

// Some of ICU's calendars count days in 32 bits and lose their way further out.
constexpr double farthest = 1e12;

UDate icuDate(const Date &date)
{
    const double seconds = date.secondsSinceReference();
    const double kept = std::isnan(seconds) ? 0 : qBound(-farthest, seconds, farthest);
    return std::floor((kept + Date::referenceSinceEpoch) * 1000);
}

struct Field
{
    UCalendarDateFields icu;
    int DateComponents::*component;
};

constexpr Field fields[] = {
    {UCAL_YEAR, &DateComponents::year},
    {UCAL_MONTH, &DateComponents::month},
    {UCAL_WEEK_OF_YEAR, &DateComponents::week},
    {UCAL_DATE, &DateComponents::day},
    {UCAL_HOUR_OF_DAY, &DateComponents::hour},
    {UCAL_MINUTE, &DateComponents::minute},
    {UCAL_SECOND, &DateComponents::second},
    {UCAL_DAY_OF_WEEK, &DateComponents::weekday},
    {UCAL_DAY_OF_WEEK_IN_MONTH, &DateComponents::weekdayOrdinal},
};

} // namespace

struct Calendar::Private
{
    // Null when ICU's data are missing.
    std::unique_ptr<icu::Calendar> calendar;
};

Calendar::Calendar(const QLocale &locale)
    : m(std::make_unique<Private>())
{
    UErrorCode status = U_ZERO_ERROR;
    m->calendar.reset(icu::Calendar::createInstance(new IcuTimeZone, icuLocale(locale), status));
    if (U_FAILURE(status))
        m->calendar.reset();
}

Calendar::~Calendar() = default;
Calendar::Calendar(Calendar &&) noexcept = default;
Calendar &Calendar::operator=(Calendar &&) noexcept = default;

DateComponents Calendar::components(const Date &date) const
{
    if (date.isAbsent() || !m->calendar)
        return {};
    UErrorCode status = U_ZERO_ERROR;
    m->calendar->setTime(icuDate(date), status);
    DateComponents components;
    for (const Field &field : fields)
        components.*field.component = m->calendar->get(field.icu, status);
    components.month += 1;
    return U_SUCCESS(status) ? components : DateComponents();
}

Date Calendar::date(const DateComponents &components) const
{
    if (!m->calendar)
        return {};
    m->calendar->clear();
    m->calendar->set(components.year, components.month - 1, components.day, components.hour,
                     components.minute, components.second);
    UErrorCode status = U_ZERO_ERROR;
    const UDate time = m->calendar->getTime(status);
    return U_SUCCESS(status) ? Date(time / 1000 - Date::referenceSinceEpoch) : Date();
}

DateComponents Calendar::difference(const Date &from, const Date &to) const
{
    if (from.isAbsent() || to.isAbsent() || !m->calendar)
        return {};
    UErrorCode status = U_ZERO_ERROR;
    m->calendar->setTime(icuDate(from), status);
    const UDate target = icuDate(to);
    DateComponents difference;
    for (const Field &field : fields) {
        if (field.icu == UCAL_DAY_OF_WEEK)
            break;
        // Moves the calendar on by what it answers.
        difference.*field.component = m->calendar->fieldDifference(target, field.icu, status);
    }
    return U_SUCCESS(status) ? difference : DateComponents();
}

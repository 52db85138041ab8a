#include "platform/foundation/IcuTimeZone.h"

#include <QDateTime>

namespace {

constexpr qint64 millisecondsPerDay = 86'400'000;

QDateTime localTime(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime);
}

qint64 offsetAt(qint64 milliseconds)
{
    return qint64(localTime(milliseconds).offsetFromUtc()) * 1000;
}

// Of a wall time, given as if it were UTC. Changes of the clock lie further apart than two days.
qint64 offsetOfWallTime(qint64 wall)
{
    const qint64 before = offsetAt(wall - millisecondsPerDay);
    const qint64 after = offsetAt(wall + millisecondsPerDay);
    if (before == after || offsetAt(wall - before) == before)
        return before;
    return offsetAt(wall - after) == after ? after : before;
}

} // namespace

IcuTimeZone::IcuTimeZone()
    : icu::TimeZone(icu::UnicodeString(u"Local"))
{ }

int32_t IcuTimeZone::getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t,
                               int32_t millis, UErrorCode &) const
{
    const QDateTime midnight(QDate(era == 0 ? -year : year, month + 1, day), QTime(0, 0), Qt::UTC);
    return static_cast<int32_t>(offsetOfWallTime(midnight.toMSecsSinceEpoch() + millis));
}

int32_t IcuTimeZone::getOffset(uint8_t era, int32_t year, int32_t month, int32_t day,
                               uint8_t dayOfWeek, int32_t millis, int32_t, UErrorCode &status) const
{
    return getOffset(era, year, month, day, dayOfWeek, millis, status);
}

void IcuTimeZone::getOffset(UDate date, UBool local, int32_t &rawOffset, int32_t &dstOffset,
                            UErrorCode &) const
{
    // ICU's own dates end long before the range of milliseconds does.
    const auto milliseconds = static_cast<qint64>(qBound(-1e18, date, 1e18));
    // Calendars only ever use the sum of the two.
    rawOffset =
        static_cast<int32_t>(local ? offsetOfWallTime(milliseconds) : offsetAt(milliseconds));
    dstOffset = 0;
}

int32_t IcuTimeZone::getRawOffset() const
{
    const QDateTime now = QDateTime::currentDateTime();
    return (now.offsetFromUtc() - (now.isDaylightTime() ? 3600 : 0)) * 1000;
}

UBool IcuTimeZone::useDaylightTime() const
{
    const QDateTime now = QDateTime::currentDateTime();
    return now.isDaylightTime() || now.addMonths(6).isDaylightTime();
}

UBool IcuTimeZone::inDaylightTime(UDate date, UErrorCode &) const
{
    return localTime(static_cast<qint64>(qBound(-1e18, date, 1e18))).isDaylightTime();
}

IcuTimeZone *IcuTimeZone::clone() const
{
    return new IcuTimeZone(*this);
}

UClassID IcuTimeZone::getDynamicClassID() const
{
    static char address = 0;
    return &address;
}

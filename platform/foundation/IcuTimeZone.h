#pragma once

#include <unicode/timezone.h>

/// The zone of Qt's local time, for ICU's calendars. ICU carries a time zone database of its own
/// that ages with the package, and knows no POSIX rule in TZ: with two databases "today" would turn
/// at another moment than the clock does. Any thread.
///
/// A wall time that occurs twice is the first of the two; one that is skipped counts on from the
/// time before the gap.
class IcuTimeZone : public icu::TimeZone
{
public:
    IcuTimeZone();

    int32_t getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t dayOfWeek,
                      int32_t millis, UErrorCode &status) const override;
    int32_t getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t dayOfWeek,
                      int32_t millis, int32_t monthLength, UErrorCode &status) const override;
    void getOffset(UDate date, UBool local, int32_t &rawOffset, int32_t &dstOffset,
                   UErrorCode &status) const override;
    /// Does nothing: the zone is the system's.
    void setRawOffset(int32_t) override { }
    int32_t getRawOffset() const override;
    UBool useDaylightTime() const override;
    UBool inDaylightTime(UDate date, UErrorCode &status) const override;
    IcuTimeZone *clone() const override;
    UClassID getDynamicClassID() const override;
};

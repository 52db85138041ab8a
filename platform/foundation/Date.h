#pragma once

#include <QMetaType>

/// A moment: seconds since 2001-01-01 00:00 UTC, or no moment at all. A double reaches dates that
/// no calendar type can hold, and date arithmetic makes such dates.
class Date
{
public:
    /// The reference date in seconds since 1970-01-01 00:00 UTC.
    static constexpr double referenceSinceEpoch = 978307200;

    /// Absent.
    Date() = default;
    explicit Date(double secondsSinceReference)
        : m_seconds(secondsSinceReference)
        , m_present(true)
    { }

    bool isAbsent() const { return !m_present; }
    /// 0, the reference date, when absent.
    double secondsSinceReference() const { return m_seconds; }

    friend bool operator==(const Date &, const Date &) = default;

private:
    double m_seconds = 0;
    bool m_present = false;
};

Q_DECLARE_METATYPE(Date)

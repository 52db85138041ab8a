#pragma once

#include <ctime>

/// Local time in a zone, until the end of the scope.
class TimeZoneScope
{
public:
    explicit TimeZoneScope(const QByteArray &zone)
        : m_before(qgetenv("TZ"))
        , m_wasSet(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", zone);
        ::tzset();
    }
    ~TimeZoneScope()
    {
        m_wasSet ? qputenv("TZ", m_before) : qunsetenv("TZ");
        ::tzset();
    }
    Q_DISABLE_COPY_MOVE(TimeZoneScope)

private:
    QByteArray m_before;
    bool m_wasSet;
};

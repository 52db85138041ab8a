#pragma once

#include "platform/foundation/SystemServices.h"

/// The services as the running program has them.

class RealClock : public Clock
{
public:
    /// In local time.
    QDateTime now() const override;
};

class RealScheduler : public Scheduler
{
public:
    void after(double seconds, QObject *context, std::function<void()> work) override;
    void later(QObject *context, std::function<void()> work) override;
};

/// preferredLanguages() of "AppleLanguages" in the user defaults and of the environment.
class RealLanguages : public Languages
{
public:
    /// @param defaults not owned; outlives this.
    explicit RealLanguages(const UserDefaults &defaults);

    QStringList preferred() const override;
    QLocale locale() const override;

private:
    const UserDefaults &m_defaults;
};

class RealAccount : public Account
{
public:
    /// From the password database; without an entry there, LOGNAME or USER.
    QString loginName() const override;
    /// Where HOME is not set to an absolute path, the password database counts.
    QString home() const override;
    QString actualHome() const override;
};

/// syslog(3), under the identity "solvane". At most one at a time.
class RealSystemLog : public SystemLog
{
public:
    RealSystemLog();
    ~RealSystemLog() override;

    void write(const QString &message) override;
};

class RealProcessEnd : public ProcessEnd
{
public:
    /// Writes out the settings and the C streams; runs no destructors and no exit handlers.
    [[noreturn]] void exit(int status) override;
};

#include "platform/foundation/RealSystemServices.h"

#include "platform/foundation/PreferredLanguages.h"

#include <QCoreApplication>
#include <QFile>
#include <QMetaObject>
#include <QTimer>

#include <pwd.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct PasswordEntry
{
    QString name;
    QString home;
};

PasswordEntry passwordEntry()
{
    const long suggested = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    struct passwd entry;
    struct passwd *found = nullptr;
    int error = 0;
    while ((error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found))
               == ERANGE
           && buffer.size() < (std::size_t(1) << 22)) {
        buffer.resize(buffer.size() * 2);
    }
    if (error != 0 || !found)
        return {};
    return {QFile::decodeName(found->pw_name), QFile::decodeName(found->pw_dir)};
}

} // namespace

QDateTime RealClock::now() const
{
    return QDateTime::currentDateTime();
}

void RealScheduler::after(double seconds, QObject *context, std::function<void()> work)
{
    if (!context)
        context = qApp;
    if (!context)
        return;
    // Also takes what is no number. Timers count milliseconds in an int.
    const double milliseconds = seconds > 0 ? std::min(seconds * 1000, 2147483647.0) : 0;
    QTimer::singleShot(std::chrono::milliseconds(qRound64(milliseconds)), Qt::PreciseTimer, context,
                       std::move(work));
}

void RealScheduler::later(QObject *context, std::function<void()> work)
{
    if (!context)
        context = qApp;
    if (context)
        QMetaObject::invokeMethod(context, std::move(work), Qt::QueuedConnection);
}

RealLanguages::RealLanguages(const UserDefaults &defaults)
    : m_defaults(defaults)
{ }

QStringList RealLanguages::preferred() const
{
    return preferredLanguages(m_defaults.value(u"AppleLanguages"_s).toStringList(),
                              [](const char *name) { return qEnvironmentVariable(name); });
}

QLocale RealLanguages::locale() const
{
    return QLocale::system();
}

QString RealAccount::loginName() const
{
    QString name = passwordEntry().name;
    for (const char *variable : {"LOGNAME", "USER"}) {
        if (name.isEmpty())
            name = qEnvironmentVariable(variable);
    }
    return name;
}

QString RealAccount::home() const
{
    const QString home = QFile::decodeName(qgetenv("HOME"));
    return home.startsWith(u'/') ? home : actualHome();
}

QString RealAccount::actualHome() const
{
    return passwordEntry().home;
}

RealSystemLog::RealSystemLog()
{
    ::openlog("solvane", LOG_PID, LOG_USER);
}

RealSystemLog::~RealSystemLog()
{
    ::closelog();
}

void RealSystemLog::write(const QString &message)
{
    // The message is data: whatever it holds, it is never the format.
    ::syslog(LOG_NOTICE, "%s", message.toUtf8().constData());
}

void RealProcessEnd::exit(int status)
{
    // What could not be written has been told.
    if (UserDefaults *defaults = systemServices().defaults)
        std::ignore = defaults->synchronize();
    std::fflush(nullptr);
    std::_Exit(status);
}

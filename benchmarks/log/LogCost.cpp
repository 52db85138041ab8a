#include "benchmarks/Table.h"
#include "helpers/sharedHelpers.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/RealFileSystem.h"
#include "platform/foundation/RealSystemServices.h"
#include "platform/foundation/RealUserDefaults.h"
#include "platform/ui/Application.h"

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr double allowedOff = 100; // nanoseconds
constexpr int rounds = 9;

/// Median nanoseconds of a call.
template <typename Call>
double nanoseconds(int calls, Call call)
{
    std::vector<double> taken;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < calls; ++i)
            call();
        const std::chrono::duration<double, std::nano> time =
            std::chrono::steady_clock::now() - start;
        taken.push_back(time.count() / calls);
    }
    std::sort(taken.begin(), taken.end());
    return taken[rounds / 2];
}

void writeBare(const char *path, const QByteArray &line)
{
    const int file = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0 || ::write(file, line.constData(), line.size()) != line.size()
        || ::close(file) != 0)
        std::abort();
}

} // namespace

/// What a call of log: costs while logging is off, and while it is on beside the least that writing
/// a line takes. Ends with 1 when the budget is missed.
int main(int argc, char **argv)
{
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(u"config"_s)));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Application application(argc, argv);
    RealClock clock;
    RealUserDefaults defaults;
    RealLanguages languages{defaults};
    RealAccount account;
    RealSystemLog systemLog;
    RealFileSystem fileSystem;
    SystemServices &services = systemServices();
    services.clock = &clock;
    services.languages = &languages;
    services.account = &account;
    services.defaults = &defaults;
    services.systemLog = &systemLog;
    services.fileSystem = &fileSystem;
    sharedHelpers helpers;
    mndAppDelegate delegate;
    delegate.sharedObjectRegister(u"SHARED.HELPERS"_s, &helpers);

    const QString message = u"Found 1204 files in the cache of the browser"_s;
    const double off = nanoseconds(1'000'000, [&] { delegate.log(message); });

    delegate.setExtendedLoggingValue(true);
    const double on = nanoseconds(20'000, [&] { delegate.log(message); });
    const QByteArray bareFile = QFile::encodeName(home.filePath(u"bare"_s));
    const QByteArray line = "23/11/2026 00:45 " + message.toUtf8() + '\n';
    const double bare = nanoseconds(20'000, [&] { writeBare(bareFile.constData(), line); });

    const bool isKept = tableRow("A log line while logging is off, ns", withUnit(off, "ns", 0), "",
                                 off, allowedOff);
    tableRow("A log line while it is on", withUnit(on / 1000, "us"),
             "open, write, close " + withUnit(bare / 1000, "us"), on / bare, 0);
    return isKept ? 0 : 1;
}

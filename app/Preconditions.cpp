#include "app/Preconditions.h"

#include "platform/foundation/RealSystemServices.h"

#include <QFile>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// With fewer the event loop's library ends the process at some point of the start.
constexpr rlim_t leastOpenFiles = 32;
constexpr rlim_t usualOpenFiles = 1024;

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

bool hasOpenFiles()
{
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0)
        return true;
    if (files.rlim_cur < usualOpenFiles && files.rlim_cur < files.rlim_max) {
        const rlimit more{std::min(usualOpenFiles, files.rlim_max), files.rlim_max};
        if (::setrlimit(RLIMIT_NOFILE, &more) == 0)
            files = more;
    }
    return files.rlim_cur >= leastOpenFiles;
}

/// The toolkit takes "/" for home where there is none, and settings and log went different ways.
void findHome()
{
    if (qgetenv("HOME").startsWith('/'))
        return;
    const QString home = RealAccount().actualHome();
    if (home.startsWith(u'/'))
        qputenv("HOME", QFile::encodeName(home));
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "solvane: %s\n", qUtf8Printable(message.simplified()));
        std::fflush(nullptr);
        std::_Exit(1);
    }
    std::fprintf(stderr, "%s\n", qUtf8Printable(qFormatLogMessage(type, context, message)));
}

} // namespace

QString Preconditions::establish(bool needsDisplay)
{
    findHome();
    if (needsDisplay && !hasDisplay())
        return u"there is no display to show the window on"_s;
    if (!hasOpenFiles())
        return u"the system allows it fewer than %1 open files"_s.arg(leastOpenFiles);
    return {};
}

Preconditions::EndsWithMessage::EndsWithMessage()
{
    qInstallMessageHandler(handleMessage);
}

Preconditions::EndsWithMessage::~EndsWithMessage()
{
    qInstallMessageHandler(nullptr);
}

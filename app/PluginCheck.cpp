#include "app/PluginCheck.h"

#include "app/Printable.h"
#include "plugin_host/PluginQuarantine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/prctl.h>

#include <csignal>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// Beyond what any plugin needs to start.
constexpr int longestRun = 60'000; // milliseconds

QStringList argumentsFor(const CommandLine &commandLine, const QString &task,
                         const QString &breadcrumb)
{
    QStringList arguments{u"--breadcrumb=%1"_s.arg(breadcrumb), task};
    if (commandLine.safeMode)
        arguments << u"--safe-mode"_s;
    for (const QString &name : commandLine.withoutPlugins)
        arguments << u"--without-plugin=%1"_s.arg(name);
    return arguments;
}

/// What happened to a process that did not get to its end.
QString end(const QProcess &process)
{
    return process.exitStatus() == QProcess::CrashExit
        ? QString::fromLocal8Bit(::strsignal(process.exitCode()))
        : u"it ended with status %1"_s.arg(process.exitCode());
}

/// The bundle whose code ran then; empty for none.
QString culpritIn(const QString &breadcrumb)
{
    PluginQuarantine reader;
    reader.keepBreadcrumbs(breadcrumb);
    return reader.culprit();
}

/// @param bundle the one that is checked; null for none.
QString who(const QString &culprit, const QString &bundle)
{
    if (culprit.isEmpty())
        return u"the program"_s;
    if (bundle.isNull())
        return culprit;
    const bool isItself =
        QFileInfo(culprit).canonicalFilePath() == QFileInfo(bundle).canonicalFilePath();
    return isItself ? u"it"_s : u"not checked: "_s + culprit;
}

/// Runs this program for the task and passes on what it says.
/// @param name stands before what went wrong.
/// @param bundle the one that it is about; null for all of them.
int runInItsOwnProcess(const CommandLine &commandLine, const QString &task, const QString &name,
                       const QString &bundle, QTextStream &out)
{
    const QTemporaryDir folder;
    const QString breadcrumb = folder.filePath(u"plugin-in-progress"_s);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process.start(QCoreApplication::applicationFilePath(),
                  argumentsFor(commandLine, task, breadcrumb), QIODevice::ReadOnly);
    if (!process.waitForStarted()) {
        out << name << ": not done: " << process.errorString() << '\n';
        return 1;
    }
    const bool hasEnded = process.waitForFinished(longestRun);
    if (!hasEnded) {
        process.kill();
        process.waitForFinished();
    }
    const QByteArray said = process.readAllStandardOutput();
    out << QString::fromUtf8(said);
    const QString culprit = culpritIn(breadcrumb);
    // What ends in order, but too early, has said why on the error stream.
    const bool isWhole = hasEnded && process.exitStatus() == QProcess::NormalExit
        && culprit.isEmpty() && (bundle.isNull() || !said.isEmpty());
    if (!isWhole) {
        out << name << ": " << printable(who(culprit, bundle));
        if (!hasEnded)
            out << " did not come to an end within " << longestRun / 1000 << " seconds\n";
        else
            out << (culprit.isEmpty() ? " was taken down: " : " took the program down: ")
                << end(process) << '\n';
    }
    out.flush();
    return isWhole ? process.exitCode() : 1;
}

} // namespace

int checkInItsOwnProcess(const CommandLine &commandLine, const QString &bundle, QTextStream &out)
{
    return runInItsOwnProcess(commandLine, u"--check-plugin=%1"_s.arg(bundle),
                              printable(QFileInfo(QDir::cleanPath(bundle)).fileName()), bundle,
                              out);
}

int listInItsOwnProcess(const CommandLine &commandLine, QTextStream &out)
{
    return runInItsOwnProcess(commandLine, u"--list-plugins"_s, u"solvane"_s, {}, out);
}

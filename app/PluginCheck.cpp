#include "app/PluginCheck.h"

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

QStringList argumentsFor(const CommandLine &commandLine, const QString &bundle,
                         const QString &breadcrumb)
{
    QStringList arguments{u"--breadcrumb=%1"_s.arg(breadcrumb), u"--check-plugin=%1"_s.arg(bundle)};
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

/// Whose code ran then.
QString culprit(const QString &bundle, const QString &breadcrumb)
{
    PluginQuarantine reader;
    reader.keepBreadcrumbs(breadcrumb);
    if (reader.culprit().isEmpty())
        return u"the program was taken down"_s;
    const bool isItself =
        QFileInfo(reader.culprit()).canonicalFilePath() == QFileInfo(bundle).canonicalFilePath();
    return isItself ? u"it took the program down"_s
                    : u"not checked: %1 took the program down"_s.arg(reader.culprit());
}

} // namespace

int checkInItsOwnProcess(const CommandLine &commandLine, const QString &bundle, QTextStream &out)
{
    const QString name = QFileInfo(QDir::cleanPath(bundle)).fileName();
    const QTemporaryDir folder;
    const QString breadcrumb = folder.filePath(u"plugin-in-progress"_s);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process.start(QCoreApplication::applicationFilePath(),
                  argumentsFor(commandLine, bundle, breadcrumb), QIODevice::ReadOnly);
    if (!process.waitForStarted()) {
        out << name << ": not checked: " << process.errorString() << '\n';
        return 1;
    }
    process.waitForFinished(-1);
    const QByteArray said = process.readAllStandardOutput();
    out << QString::fromUtf8(said);
    const bool isWhole = process.exitStatus() == QProcess::NormalExit && !said.isEmpty();
    if (!isWhole)
        out << name << ": " << culprit(bundle, breadcrumb) << ": " << end(process) << '\n';
    out.flush();
    return isWhole ? process.exitCode() : 1;
}

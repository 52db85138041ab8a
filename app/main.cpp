#include "app/CommandLine.h"
#include "app/ConsoleAlertPanel.h"
#include "app/DebugOutput.h"
#include "app/MainLoopWatch.h"
#include "app/OrderlyEnd.h"
#include "app/PluginCheck.h"
#include "app/PluginDiagnosis.h"
#include "app/Preconditions.h"
#include "app/Printable.h"
#include "app/ReducedMotion.h"
#include "app/SingleInstance.h"
#include "app/Snapshot.h"
#include "app/TerminationSignals.h"
#include "app/TextScale.h"
#include "app/TrayIcon.h"
#include "host/InterfaceFiles.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/RealFileSystem.h"
#include "platform/foundation/RealMachine.h"
#include "platform/foundation/RealSystemServices.h"
#include "platform/foundation/RealUserDefaults.h"
#include "platform/ui/Application.h"
#include "platform/ui/InterfaceFile.h"
#include "platform/ui/ModalLoop.h"
#include "platform/ui/NamedImage.h"
#include "platform/ui/RealDesktopServices.h"
#include "platform/ui/TouchBarApplication.h"
#include "plugin_host/CrashWitness.h"
#include "plugin_host/mndPlugins.h"
#include "plugin_host/PluginQuarantine.h"

#include <QScopeGuard>
#include <QTextStream>
#include <QTimer>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

/// Long enough for live figures to have come in.
constexpr int snapshotDelay = 3000; // milliseconds

/// The services as the running program has them, for as long as it runs.
struct RealServices
{
    RealServices()
    {
        systemServices() = {&clock,        &scheduler,  &languages,  &account,
                            &defaults,     &systemLog,  &processEnd, &mainBundle,
                            &machineFacts, &deviceTree, &fileSystem, SOLVANE_EDITION};
        desktopServices() = {&alertPanel, &workspace, &screen, &openPanel};
    }

    ~RealServices()
    {
        systemServices() = {};
        desktopServices() = {};
    }
    Q_DISABLE_COPY_MOVE(RealServices)

    RealClock clock;
    RealScheduler scheduler;
    RealSystemLog systemLog;
    RealUserDefaults defaults{RealUserDefaults::defaultFilePath(), &systemLog};
    RealLanguages languages{defaults};
    RealAccount account;
    RealProcessEnd processEnd;
    Bundle mainBundle{Bundle::mainBundlePath()};
    RealMachineFacts machineFacts;
    RealDeviceTree deviceTree;
    RealFileSystem fileSystem;
    MessageBoxAlertPanel alertPanel;
    XdgWorkspace workspace;
    WindowSystemScreen screen;
    FileDialogOpenPanel openPanel;
};

std::unique_ptr<Application> makeApplication(int &argc, char **argv)
{
    const Preconditions::EndsWithMessage endsWithMessage;
    const bool hasTouchBar = CommandLine::wantsTouchBar(argc, argv);
    return TextScale::makeApplication(
        argc, argv, [&](int &count, char **values) -> std::unique_ptr<Application> {
            if (hasTouchBar)
                return std::make_unique<TouchBarApplication>(count, values);
            return std::make_unique<Application>(count, values);
        });
}

void setIdentity(Application &application)
{
    Application::setApplicationName(u"solvane"_s);
    Application::setApplicationDisplayName(u"Solvane"_s);
    Application::setApplicationVersion(
        systemServices().mainBundle->infoValue(u"CFBundleVersion"_s).toString());
    Application::setDesktopFileName(u"com.solvane.Solvane"_s);
    application.setWindowIcon(NamedImage::pixmap(u"solvane"_s, {64, 64}, 1));
}

PluginQuarantine::Options quarantineOptions(const CommandLine &commandLine)
{
    return {commandLine.safeMode, commandLine.withoutPlugins};
}

void tellUnknownNames(const PluginQuarantine &quarantine)
{
    for (const QString &name : quarantine.unknownNames())
        QTextStream(stderr) << "solvane: no plugin is named \"" << printable(name) << "\"\n";
}

/// In this process: whatever a plugin does to it ends it.
int diagnoseHere(const CommandLine &commandLine, Application &application)
{
    PluginQuarantine quarantine(quarantineOptions(commandLine));
    const QString &breadcrumb = commandLine.breadcrumb;
    if (!breadcrumb.isNull() && !quarantine.keepBreadcrumbs(breadcrumb))
        QTextStream(stderr) << "solvane: " << breadcrumb << " cannot be written\n";
    const OrderlyEnd end(quarantine); // tells whose an exit() was
    std::unique_ptr<QWidget> window;  // outlives the delegate that works on it
    mndAppDelegate delegate;
    PluginDiagnosis diagnosis;
    // Before either ends with its plugins, whose threads may wait for this one.
    const auto close = qScopeGuard([] { MainThread::close(); });
    setApplicationDelegate(&delegate);
    window = InterfaceFile::load(u"MainMenu"_s, &delegate);
    delegate.setPluginLoadObserver(&diagnosis);
    delegate.setAsksNobody();
    delegate.setPluginQuarantine(&quarantine);
    application.finishLaunching();
    tellUnknownNames(quarantine);

    QTextStream out(stdout);
    if (commandLine.listPlugins)
        diagnosis.list(out);
    return commandLine.checkPlugin.isNull()
        ? 0
        : diagnosis.check(commandLine.checkPlugin, delegate, quarantine, out);
}

int diagnose(const CommandLine &commandLine, Application &application)
{
    if (!commandLine.breadcrumb.isNull())
        return diagnoseHere(commandLine, application);
    QTextStream out(stdout);
    int status = commandLine.listPlugins ? listInItsOwnProcess(commandLine, out) : 0;
    for (const QString &bundle : commandLine.pluginsToCheck())
        status |= checkInItsOwnProcess(commandLine, bundle, out);
    return status;
}

void tellOfWaiting(const PluginModules::Owner &owner)
{
    DebugOutput::print(
        owner.name,
        u"keeps the main loop waiting for more than %1 ms"_s.arg(MainLoopWatch::longest));
}

/// What is asked of this program, to the one that runs already. Answers the exit status.
int passOn(const CommandLine &commandLine, SingleInstance &instance)
{
    if (commandLine.isForTheStart())
        QTextStream(stderr) << "solvane: it is running already; how it starts is decided when it "
                               "starts the next time\n";
    if ((commandLine.hidden && commandLine.documents.isEmpty())
        || instance.passOn(commandLine.documents))
        return 0;
    QTextStream(stderr) << "solvane: the running program does not answer\n";
    return 1;
}

/// Laid out without being seen, so that what plugins place in it stands right later on.
void layOutHidden(QWidget &window, mndAppDelegate &delegate)
{
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    window.close();
    window.setAttribute(Qt::WA_DontShowOnScreen, false);
    delegate.windowShouldClose(&window);
}

int run(const CommandLine &commandLine, Application &application)
{
    for (const QString &document : commandLine.documents)
        QTextStream(stderr) << "solvane: documents are not opened: " << printable(document) << '\n';
    SingleInstance instance(application);
    // A picture is taken of this program, whatever else is running.
    if (commandLine.snapshot.isNull() && instance.claim() == SingleInstance::Second)
        return passOn(commandLine, instance);

    PluginQuarantine quarantine(quarantineOptions(commandLine));
    const TerminationSignals signalsOfTheSystem(
        application, [&] { quarantine.endIsAskedFor(ModalLoop::isRunning()); });
    if (!quarantine.keepBreadcrumbs(PluginQuarantine::breadcrumbPath()))
        systemServices().systemLog->write(u"No breadcrumbs are kept: another run has them, or "
                                          "the folder cannot be written."_s);
    std::optional<DebugOutput> debug;
    if (commandLine.debug)
        debug.emplace();
    const OrderlyEnd end(quarantine);
    // Before any plugin hears that it ends.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application,
                     [] { CrashWitness::limitEnd(0); });
    std::unique_ptr<QWidget> window; // outlives the delegate that works on it
    mndAppDelegate delegate;
    delegate.setPluginLoadObserver(debug ? &*debug : nullptr);
    delegate.setPluginQuarantine(&quarantine);
    setApplicationDelegate(&delegate);
    window = InterfaceFile::load(u"MainMenu"_s, &delegate);
    if (commandLine.hidden)
        layOutHidden(*window, delegate);
    application.finishLaunching();
    end.comeFirst();
    tellUnknownNames(quarantine);
    // Not before: to lay it out takes the fonts, and the rest of the start has to wait anyway.
    if (!commandLine.hidden && !application.isTerminating())
        window->show();
    for (const QString &document : commandLine.documents)
        application.openFile(document);

    new ReducedMotion(&application);
    const TrayIcon tray(application, delegate);
    if (!commandLine.snapshot.isNull()) {
        // No window manager does it on a virtual display.
        if (window)
            window->activateWindow();
        QTimer::singleShot(snapshotDelay, &application, [&] {
            Application::exit(takeSnapshot(delegate, commandLine.snapshot));
        });
    }
    std::optional<MainLoopWatch> watch;
    if (debug)
        watch.emplace(tellOfWaiting);
    const int status = Application::exec();
    watch.reset();
    // A slow disk is waited for: it is no plugin's fault, and what the user has set would be lost.
    CrashWitness::suspendLimit();
    std::ignore = systemServices().defaults->synchronize();
    CrashWitness::limitEnd(status);
    MainThread::close();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    const bool needsDisplay = !CommandLine::needsNoDisplay(argc, argv);
    if (!needsDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (const QString missing = Preconditions::establish(needsDisplay); !missing.isNull()) {
        QTextStream(stderr) << "solvane: " << missing << '\n';
        return 1;
    }
    // Panels count on several screens, too; where the desktop tells of them, it tells by this.
    qputenv("QT_RELY_ON_NET_WORKAREA_ATOM", "1");
    const std::unique_ptr<Application> made = makeApplication(argc, argv);
    Application &application = *made;
    const RealServices services;
    setIdentity(application);
    const CommandLine commandLine = CommandLine::parse();
    addInterfaceFiles();
    ConsoleAlertPanel console;
    if (commandLine.isDiagnosis() || !commandLine.snapshot.isNull())
        desktopServices().alertPanel = &console;
    return commandLine.isDiagnosis() ? diagnose(commandLine, application)
                                     : run(commandLine, application);
}

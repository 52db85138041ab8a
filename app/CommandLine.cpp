#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

bool CommandLine::needsNoDisplay(int argc, char **argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char *argument) {
        const QLatin1StringView text(argument);
        return text == "--list-plugins"_L1 || text.startsWith("--check-plugin"_L1)
            || text == "--help"_L1 || text == "-h"_L1 || text == "--help-all"_L1
            || text == "--version"_L1 || text == "-v"_L1;
    });
}

bool CommandLine::wantsTouchBar(int argc, char **argv)
{
    char **const documents = std::find_if(
        argv + 1, argv + argc, [](const char *each) { return QLatin1StringView(each) == "--"_L1; });
    const bool isAsked = std::any_of(argv + 1, documents, [](const char *each) {
        return QLatin1StringView(each) == "--touch-bar"_L1;
    });
    return isAsked || qEnvironmentVariable("SOLVANE_TOUCH_BAR") == u"1"_s;
}

CommandLine CommandLine::parse()
{
    const QCommandLineOption hidden(u"hidden"_s, u"Start without showing the window."_s);
    const QCommandLineOption list(
        u"list-plugins"_s,
        u"List every plugin with its load time, and what was refused and why."_s);
    const QCommandLineOption check(
        u"check-plugin"_s, u"Say what is wrong with a plugin bundle, a line each."_s, u"bundle"_s);
    const QCommandLineOption snapshot(
        u"snapshot"_s, u"Print the sidebar's rows, save a picture of the window and end."_s,
        u"file"_s);
    const QCommandLineOption touchBar(u"touch-bar"_s,
                                      u"Show the Touch Bar at the foot of the window."_s);
    const QCommandLineOption safe(
        u"safe-mode"_s, u"Start with the plugins that come with Solvane, and no others."_s);
    const QCommandLineOption without(
        u"without-plugin"_s, u"Leave a plugin out of this run. May be given again."_s, u"id"_s);
    const QCommandLineOption debug(
        u"debug"_s,
        u"Print what plugins do wrong: refused bundles, calls that do nothing, "
        "exceptions, a main loop that is kept waiting."_s);
    QCommandLineOption breadcrumb(u"breadcrumb"_s, {}, u"file"_s);
    breadcrumb.setFlags(QCommandLineOption::HiddenFromHelp);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Keeps a machine tidy and healthy."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({hidden, touchBar, safe, without, debug, list, check, breadcrumb, snapshot});
    parser.addPositionalArgument(
        u"documents"_s, u"Documents. The window is shown; none is opened."_s, u"[documents...]"_s);
    parser.process(*QCoreApplication::instance());

    CommandLine result;
    result.hidden = parser.isSet(hidden);
    result.debug = parser.isSet(debug);
    result.safeMode = parser.isSet(safe);
    result.touchBar = parser.isSet(touchBar);
    result.withoutPlugins = parser.values(without);
    result.listPlugins = parser.isSet(list);
    result.checkPlugin = parser.isSet(check) ? parser.value(check) : QString();
    result.breadcrumb = parser.value(breadcrumb);
    result.snapshot = parser.isSet(snapshot) ? parser.value(snapshot) : QString();
    for (const QString &document : parser.positionalArguments())
        result.documents << QFileInfo(document).absoluteFilePath();
    return result;
}

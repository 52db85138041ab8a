#include "app/DebugOutput.h"

#include "app/Printable.h"
#include "plugin_host/CrashWitness.h"
#include "plugin_host/PluginModules.h"

#include <QFileInfo>

#include <cstdio>
#include <exception>

using namespace Qt::StringLiterals;

DebugOutput::DebugOutput()
    : m_log(systemServices().systemLog)
{
    systemServices().systemLog = this;
}

DebugOutput::~DebugOutput()
{
    systemServices().systemLog = m_log;
}

void DebugOutput::bundleHandled(const PluginLoadReport &report)
{
    const QString plugin =
        report.id.isEmpty() ? QFileInfo(report.path).completeBaseName() : report.id;
    const QString state = report.accepted ? u"accepted: "_s
        : report.leftOut                  ? u"left out: "_s
                                          : u"refused: "_s;
    for (const QString &problem : report.problems)
        print(plugin.toUtf8().constData(), state + problem);
}

void DebugOutput::callIsWrong(const QString &what)
{
    print(PluginModules::onThisStack().name, what);
}

void DebugOutput::write(const QString &message)
{
    // Whoever has thrown is not on the stack any more.
    const PluginModules::Owner owner =
        std::current_exception() ? CrashWitness::lastThrower() : PluginModules::onThisStack();
    print(owner.name, message);
    m_log->write(message);
}

void DebugOutput::print(const char *plugin, const QString &what)
{
    // One call, so that the lines of several threads stay whole.
    std::fprintf(stderr, "solvane: debug: %s: %s\n",
                 plugin ? qUtf8Printable(printable(QString::fromUtf8(plugin))) : "host",
                 qUtf8Printable(printable(what)));
}

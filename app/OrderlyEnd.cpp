#include "app/OrderlyEnd.h"

#include "plugin_host/CrashWitness.h"
#include "plugin_host/PluginModules.h"
#include "plugin_host/PluginQuarantine.h"

#include <cstdlib>

namespace {

OrderlyEnd *current = nullptr;

void onExit(int status, void *)
{
    if (!current)
        return;
    if (const PluginModules::Owner caller = PluginModules::onThisStack(); caller.bundle)
        CrashWitness::blame(caller.bundle);
    current->exit(status);
}

} // namespace

OrderlyEnd::OrderlyEnd(PluginQuarantine &quarantine)
    : m_quarantine(quarantine)
    , m_end(systemServices().processEnd)
{
    systemServices().processEnd = this;
    current = this;
    comeFirst();
}

OrderlyEnd::~OrderlyEnd()
{
    current = nullptr;
    systemServices().processEnd = m_end;
}

void OrderlyEnd::comeFirst()
{
    // The last one to be registered is called first.
    ::on_exit(onExit, nullptr);
}

void OrderlyEnd::exit(int status)
{
    m_quarantine.end();
    m_end->exit(status);
}

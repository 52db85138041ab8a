#pragma once

#include "platform/foundation/SystemServices.h"
#include "plugin_host/PluginQuarantine.h"

/// The end that the program itself decides on is nobody's fault, not even in the middle of a
/// plugin's start. Stands in for the process's end while it lives. Main thread.
class OrderlyEnd : public ProcessEnd
{
public:
    explicit OrderlyEnd(PluginQuarantine &quarantine)
        : m_quarantine(quarantine)
        , m_end(systemServices().processEnd)
    {
        systemServices().processEnd = this;
    }
    ~OrderlyEnd() override { systemServices().processEnd = m_end; }
    Q_DISABLE_COPY_MOVE(OrderlyEnd)

    void exit(int status) override
    {
        m_quarantine.end();
        m_end->exit(status);
    }

private:
    PluginQuarantine &m_quarantine;
    ProcessEnd *m_end;
};

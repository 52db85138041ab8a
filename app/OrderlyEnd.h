#pragma once

#include "platform/foundation/SystemServices.h"

class PluginQuarantine;

/// The end that the program itself decides on is nobody's fault, not even in the middle of a
/// plugin's start. Stands in for the process's end while it lives. Main thread.
///
/// The same goes for an exit() that others call while the program runs, as the toolkit does when it
/// loses the display: the process ends before destructors of what is still in use can crash it. It
/// is a plugin's fault when a plugin has called it.
class OrderlyEnd : public ProcessEnd
{
public:
    explicit OrderlyEnd(PluginQuarantine &quarantine);
    ~OrderlyEnd() override;
    Q_DISABLE_COPY_MOVE(OrderlyEnd)

    /// Before what has been loaded so far, whenever somebody calls exit().
    static void comeFirst();

    void exit(int status) override;

private:
    PluginQuarantine &m_quarantine;
    ProcessEnd *m_end;
};

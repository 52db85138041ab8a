#pragma once

#include <QSocketNotifier>

#include <functional>

class Application;

/// Ends the program through its normal termination when the system or a terminal asks for it with
/// SIGTERM, SIGINT or SIGHUP; SIGHUP not where it was started to ignore that one. A second one of
/// the kind ends it at once. One object; main thread.
class TerminationSignals
{
public:
    /// @param heard is called first.
    TerminationSignals(Application &application, std::function<void()> heard);
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    QSocketNotifier m_arrived{QSocketNotifier::Read};
};

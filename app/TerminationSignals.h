#pragma once

#include <QSocketNotifier>

class Application;

/// Ends the program through its normal termination when the system or a terminal asks for it with
/// SIGTERM, SIGINT or SIGHUP; SIGHUP not where it was started to ignore that one. A second one of
/// the kind ends it at once. One object; main thread.
class TerminationSignals
{
public:
    explicit TerminationSignals(Application &application);
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    QSocketNotifier m_arrived{QSocketNotifier::Read};
};

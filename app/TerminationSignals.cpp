#include "app/TerminationSignals.h"

#include "platform/ui/Application.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

/// All that a handler may touch: there is no other way to hand it something.
volatile std::sig_atomic_t arrivals = -1;

void wake(int)
{
    const int error = errno;
    const quint64 one = 1;
    if (::write(arrivals, &one, sizeof one) != sizeof one)
        ::_exit(1);
    errno = error;
}

void setHandler(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int signal : handled) {
        struct sigaction former = {};
        // nohup has the program outlive its terminal. An ignored SIGINT means nothing: scripts
        // start whatever they put into the background that way.
        if (signal == SIGHUP && ::sigaction(signal, nullptr, &former) == 0
            && former.sa_handler == SIG_IGN)
            continue;
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(Application &application, std::function<void()> heard)
{
    arrivals = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (arrivals < 0)
        return; // The system's own way of ending a program stays.
    m_arrived.setSocket(arrivals);
    m_arrived.setEnabled(true);
    QObject::connect(&m_arrived, &QSocketNotifier::activated, &application,
                     [this, &application, heard = std::move(heard)] {
                         m_arrived.setEnabled(false);
                         heard();
                         application.terminate();
                         // Whatever window or alert is open: nobody may be there to answer it.
                         Application::exit();
                     });
    setHandler(wake, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

TerminationSignals::~TerminationSignals()
{
    setHandler(SIG_DFL, 0);
    if (arrivals >= 0)
        ::close(arrivals);
    arrivals = -1;
}

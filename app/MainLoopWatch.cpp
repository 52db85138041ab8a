#include "app/MainLoopWatch.h"

#include <QMetaObject>

#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>

using namespace std::chrono_literals;

namespace {

constexpr auto rest = 25ms; ///< between an answer and the next question

pthread_t mainThread;
PluginModules::Owner seen; // written in the signal's handler, read once hasLooked says so
std::atomic<bool> hasLooked = false;

int lookSignal()
{
    return SIGRTMAX - 2;
}

void look(int)
{
    const int error = errno;
    seen = PluginModules::onThisStack();
    hasLooked = true;
    errno = error;
}

/// What the main thread is in. It looks itself: nobody else can walk its stack.
PluginModules::Owner whoseCodeRuns()
{
    hasLooked = false;
    ::pthread_kill(mainThread, lookSignal());
    for (int attempt = 0; attempt < 100 && !hasLooked; ++attempt)
        std::this_thread::sleep_for(1ms);
    return hasLooked ? seen : PluginModules::Owner();
}

} // namespace

MainLoopWatch::MainLoopWatch(std::function<void(const PluginModules::Owner &)> tell)
    : m_tell(std::move(tell))
{
    mainThread = ::pthread_self();
    struct sigaction action = {};
    action.sa_handler = look;
    action.sa_flags = SA_RESTART;
    ::sigaction(lookSignal(), &action, nullptr);
    m_thread = std::thread([this] { watch(); });
}

MainLoopWatch::~MainLoopWatch()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void MainLoopWatch::watch()
{
    std::unique_lock lock(m_mutex);
    while (!m_stop) {
        m_isAnswered = false;
        QMetaObject::invokeMethod(
            &m_context,
            [this] {
                const std::lock_guard answer(m_mutex);
                m_isAnswered = true;
                m_changed.notify_all();
            },
            Qt::QueuedConnection);
        const auto isOver = [this] { return m_isAnswered || m_stop; };
        if (!m_changed.wait_for(lock, std::chrono::milliseconds(longest), isOver)) {
            lock.unlock();
            m_tell(whoseCodeRuns());
            lock.lock();
            m_changed.wait(lock, isOver);
        }
        m_changed.wait_for(lock, rest, [this] { return m_stop; });
    }
}

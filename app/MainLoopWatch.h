#pragma once

#include "plugin_host/PluginModules.h"

#include <QObject>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// Notices when the main loop does not answer for longer than plugins may keep it: a thread of its
/// own asks it again and again. For diagnosis, since that never lets the machine rest. Made and
/// ended on the main thread.
class MainLoopWatch
{
public:
    /// @param tell is called on the watching thread, as soon as the main loop is late, with whom it
    /// was in just then.
    explicit MainLoopWatch(std::function<void(const PluginModules::Owner &)> tell);
    ~MainLoopWatch();
    MainLoopWatch(const MainLoopWatch &) = delete;
    MainLoopWatch &operator=(const MainLoopWatch &) = delete;

    static constexpr int longest = 50; ///< milliseconds

private:
    void watch();

    const std::function<void(const PluginModules::Owner &)> m_tell;
    QObject m_context; ///< questions that are still under way go with it
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isAnswered = false;
    bool m_stop = false;
    std::thread m_thread; // last: it uses the others
};

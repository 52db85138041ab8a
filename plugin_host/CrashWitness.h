#pragma once

#include "plugin_host/PluginModules.h"

#include <QByteArray>

#include <climits>
#include <cstdint>

/// What a run leaves behind unless it ends in order. As it lies on disk; texts end at a zero.
struct Breadcrumb
{
    char entered[PATH_MAX]; ///< bundle whose code is being started or ended
    char blamed[PATH_MAX];  ///< bundle in whose code a run came to its end
    std::uint32_t hasCrashed;
    std::uint32_t crashes; ///< runs that ended so, one after the other, before this one
};

/// Looks at the stack when the process is about to die of a fault of its own (SIGSEGV, SIGBUS,
/// SIGILL, SIGFPE; SIGABRT, which std::terminate() raises; SIGTRAP, by which the web engine's
/// assertions end) and writes down whose code it was in.
/// The process then dies as it would have: same signal, same core dump. One for the process.
///
/// What a signal handler does here takes no memory and no lock. Only the main thread has a stack
/// apart for it: elsewhere a stack overflow leaves no trace.
namespace CrashWitness {

/// Begins to watch, or goes on with another place to write to. Main thread.
/// @param place where to write; null where nothing lies on disk any more.
/// @param file made for what is still to be told while there is no place; empty for never.
void watch(Breadcrumb *place, const QByteArray &file);

/// From here on the main thread has this long to come to its end. Then whoever it is stuck in is
/// written down and the process ends at once, with the status. A further call starts anew. Main
/// thread.
void limitEnd(int status);
/// Gives it the whole time again, if it is limited.
void extendEnd();
/// Takes the limit away, until the next limitEnd().
void suspendLimit();

/// The calling thread is about to throw. What ends the process because nobody was to catch it may
/// have let go of the frames by then. Any thread.
void noteThrow() noexcept;
/// Whose code has thrown the exception that the calling thread has thrown last.
PluginModules::Owner lastThrower() noexcept;

/// Writes down a bundle in whose code the run has come to its end.
void blame(const char *bundle) noexcept;

} // namespace CrashWitness

#include "plugin_host/CrashWitness.h"

#include <QtGlobal>

#include <cxxabi.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>

namespace {

constexpr std::array fatal{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGABRT};

/// For everything that plugins do on their way out; more than that, and a session that ends with
/// the program would be kept waiting.
constexpr timespec longestEnd{5, 0};

// All that a handler may touch: there is no other way to hand it something.
std::atomic<Breadcrumb *> crumb = nullptr;
char lateFile[PATH_MAX];
Breadcrumb late; ///< what goes into that file; zero until then
pid_t process = 0;
std::array<struct sigaction, fatal.size()> former;
std::atomic<pid_t> witness = 0; ///< the thread that met the fault first
std::atomic<int> firstSignal = 0;
std::atomic<int> endStatus = 0;
constinit thread_local PluginModules::Owner thrower;

std::optional<timer_t> endTimer;

pid_t ownThread()
{
    return static_cast<pid_t>(::syscall(SYS_gettid));
}

void note(const char *bundle, bool hasCrashed) noexcept
{
    Breadcrumb *place = crumb;
    Breadcrumb &told = place ? *place : late;
    if (bundle)
        std::strncpy(told.blamed, bundle, sizeof told.blamed - 1);
    told.hasCrashed |= hasCrashed ? 1U : 0U;
}

/// What was noted while nothing lay on disk.
void keepLate() noexcept
{
    if (crumb.load() || lateFile[0] == '\0' || !(late.hasCrashed || *late.blamed))
        return;
    const int file =
        ::open(lateFile, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    // A part would tell as little as nothing: no more can be done with a full disk.
    if (file >= 0 && ::write(file, &late, sizeof late) != ssize_t(sizeof late))
        ::unlink(lateFile);
}

/// Where the call came from that led to nowhere, for there is no frame of it to be found; null
/// where the fault is another.
const void *callerOfNothing(const siginfo_t &info, const void *context)
{
#if defined(__x86_64__)
    const auto &registers = static_cast<const ucontext_t *>(context)->uc_mcontext.gregs;
    const bool isNowhere = registers[REG_RIP] == reinterpret_cast<greg_t>(info.si_addr);
    return isNowhere ? *reinterpret_cast<void *const *>(registers[REG_RSP]) : nullptr;
#elif defined(__aarch64__)
    const auto &machine = static_cast<const ucontext_t *>(context)->uc_mcontext;
    const bool isNowhere = machine.pc == reinterpret_cast<std::uintptr_t>(info.si_addr);
    return isNowhere ? reinterpret_cast<const void *>(machine.regs[30]) : nullptr;
#else
    Q_UNUSED(info)
    Q_UNUSED(context)
    return nullptr;
#endif
}

bool isOwnFault(const siginfo_t &info)
{
    return info.si_code > 0 || info.si_pid == process;
}

void testify(const siginfo_t &info, const void *context)
{
    // Also without any plugin on the stack, and before the stack turns out to be damaged.
    note(nullptr, true);
    PluginModules::Owner owner = PluginModules::onThisStack();
    if (!owner.bundle && (info.si_signo == SIGSEGV || info.si_signo == SIGBUS))
        owner = PluginModules::ownerOf(callerOfNothing(info, context));
    else if (!owner.bundle && info.si_signo == SIGABRT && abi::__cxa_current_exception_type())
        owner = thrower;
    if (owner.bundle)
        note(owner.bundle, true);
    keepLate();
}

void restoreFormer()
{
    for (std::size_t i = 0; i < fatal.size(); ++i)
        ::sigaction(fatal[i], &former[i], nullptr);
}

void onFault(int signal, siginfo_t *info, void *context)
{
    const int error = errno;
    const pid_t self = ownThread();
    pid_t nobody = 0;
    // What a child does before it is another program is not ours to tell.
    const bool isOurs = ::getpid() == process;
    if (witness.compare_exchange_strong(nobody, self)) {
        firstSignal = signal;
        if (isOurs && isOwnFault(*info))
            testify(*info, context);
    } else if (nobody != self) {
        while (true) // the first one ends the process for both
            ::pause();
    }
    restoreFormer();
    // A fault of the processor comes again at the same place as soon as this returns. What was
    // sent, what stands behind the place by then, and what has interrupted the look at a damaged
    // stack, does not.
    const bool comesAgain =
        info->si_code > 0 && signal == firstSignal && signal != SIGABRT && signal != SIGTRAP;
    if (!comesAgain) {
        sigset_t pending;
        ::sigemptyset(&pending);
        ::sigaddset(&pending, firstSignal);
        // Until the return, so that the core shows the place.
        if (nobody == 0)
            ::pthread_sigmask(SIG_BLOCK, &pending, nullptr);
        ::syscall(SYS_tgkill, ::getpid(), self, firstSignal.load());
    }
    errno = error;
}

void onEndTooLong(int, siginfo_t *, void *)
{
    const PluginModules::Owner owner = PluginModules::onThisStack();
    if (owner.bundle)
        note(owner.bundle, false);
    keepLate();
    ::_exit(endStatus);
}

void giveMainThreadAStack()
{
    // The frames of several look-ups, and room for what newer processors put beside them.
    alignas(64) static std::array<char, 128 * 1024> room;
    const stack_t stack{room.data(), 0, room.size()};
    ::sigaltstack(&stack, nullptr);
}

} // namespace

void CrashWitness::watch(Breadcrumb *place, const QByteArray &file)
{
    const bool isFirst = process == 0;
    process = ::getpid();
    if (isFirst) {
        giveMainThreadAStack();
        // After whatever is loaded from here on has gone: what the rest of the end takes is
        // nobody's fault.
        std::atexit(suspendLimit);
        // What the unwinder does once, it does now.
        PluginModules::onThisStack();
        struct sigaction action = {};
        action.sa_sigaction = onFault;
        // A second fault while the first is looked at must come through.
        action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
        for (std::size_t i = 0; i < fatal.size(); ++i)
            ::sigaction(fatal[i], &action, &former[i]);
    }
    if (file.size() < PATH_MAX)
        std::strcpy(lateFile, file.constData());
    crumb = place;
}

void CrashWitness::limitEnd(int status)
{
    endStatus = status;
    if (!endTimer) {
        const int signal = SIGRTMAX - 1;
        struct sigaction action = {};
        action.sa_sigaction = onEndTooLong;
        action.sa_flags = SA_SIGINFO | SA_RESTART;
        ::sigaction(signal, &action, nullptr);
        sigset_t open;
        ::sigemptyset(&open);
        ::sigaddset(&open, signal);
        ::pthread_sigmask(SIG_UNBLOCK, &open, nullptr);
        sigevent event = {};
        event.sigev_notify = SIGEV_THREAD_ID;
        event.sigev_signo = signal;
        event._sigev_un._tid = ownThread();
        timer_t made = {};
        if (::timer_create(CLOCK_MONOTONIC, &event, &made) == 0)
            endTimer = made;
    }
    extendEnd();
}

void CrashWitness::extendEnd()
{
    const itimerspec once{{0, 0}, longestEnd};
    if (endTimer)
        ::timer_settime(*endTimer, 0, &once, nullptr);
}

void CrashWitness::suspendLimit()
{
    const itimerspec never{{0, 0}, {0, 0}};
    if (endTimer)
        ::timer_settime(*endTimer, 0, &never, nullptr);
}

void CrashWitness::noteThrow() noexcept
{
    thrower = PluginModules::onThisStack();
}

PluginModules::Owner CrashWitness::lastThrower() noexcept
{
    return thrower;
}

void CrashWitness::blame(const char *bundle) noexcept
{
    note(bundle, false);
}

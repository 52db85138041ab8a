/// Loaded before the C library: makes file calls of the program fail, or its clock jump.
///
///     SOLVANE_FAULT        number of the error, such as 28 for a full disk
///     SOLVANE_FAULT_CALLS  " write open mkdir rename sync truncate ", or some of them
///     SOLVANE_FAULT_BELOW  folders whose files it is about, separated by ":"
///     SOLVANE_FAULT_WHILE  a file: there are faults while it exists
///     SOLVANE_FAULT_MET    a file that gets a line for each call that failed
///     SOLVANE_SLOW_SYNC    seconds that it takes to have a file below them reach the disk
///     SOLVANE_CLOCK_JUMPS  hours that the time of day is off, forwards and backwards by turns
///
/// A full disk takes half of what is written, then nothing, and lets what is there be replaced.
///
/// A test that this is linked into says itself which calls fail: FailingCalls.

#include "tests/faults/FailingCalls.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

std::string setting(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

struct Settings
{
    int error = std::atoi(setting("SOLVANE_FAULT").c_str());
    std::string calls = setting("SOLVANE_FAULT_CALLS");
    std::string below = ":" + setting("SOLVANE_FAULT_BELOW") + ":";
    std::string trigger = setting("SOLVANE_FAULT_WHILE");
    std::string met = setting("SOLVANE_FAULT_MET");
    unsigned slow = unsigned(std::atoi(setting("SOLVANE_SLOW_SYNC").c_str()));
    time_t jump = std::atoi(setting("SOLVANE_CLOCK_JUMPS").c_str()) * 3600L;
};

/// Not before the first call: other libraries start before this one.
const Settings &settings()
{
    static const auto *const once = new Settings; // calls come until the very end
    return *once;
}

std::string pathOf(int descriptor)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    char path[4096];
    const ssize_t size = ::readlink(link.c_str(), path, sizeof path);
    return std::string(path, size > 0 ? static_cast<size_t>(size) : 0);
}

std::string pathAt(int folder, const char *path)
{
    return *path == '/' ? path : pathOf(folder) + '/' + path;
}

bool isMeant(const std::string &item)
{
    const std::string path = item + '/';
    const std::string &all = settings().below;
    for (size_t slash = path.find('/', 1); slash != path.npos; slash = path.find('/', slash + 1)) {
        if (all.find(':' + path.substr(0, slash) + ':') != all.npos)
            return true;
    }
    return false;
}

std::atomic<FailingCalls *> failingCalls = nullptr;

int error()
{
    const FailingCalls *calls = failingCalls;
    return calls ? calls->error : settings().error;
}

/// Whether the call is to fail; then errno says how. Otherwise errno stays as it was.
bool fails(const char *call, const std::string &path)
{
    if (FailingCalls *calls = failingCalls)
        return calls->meet(call, path);
    const Settings &with = settings();
    const int before = errno;
    if (with.slow != 0 && std::string(call) == "sync" && isMeant(path))
        ::sleep(with.slow);
    const bool isFault = with.error != 0 && isMeant(path)
        && with.calls.find(' ' + std::string(call) + ' ') != std::string::npos
        && ::syscall(SYS_access, with.trigger.c_str(), F_OK) == 0;
    if (isFault) {
        const std::string line = std::string(call) + ' ' + path + '\n';
        const long file =
            ::syscall(SYS_openat, AT_FDCWD, with.met.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        ::syscall(SYS_write, file, line.data(), line.size());
        ::syscall(SYS_close, file);
    }
    errno = isFault ? with.error : before;
    return isFault;
}

bool failsToOpen(int folder, const char *path, int flags)
{
    const bool writes = (flags & (O_ACCMODE | O_CREAT)) != O_RDONLY;
    const bool makes = (flags & O_TMPFILE) == O_TMPFILE
        || ((flags & O_CREAT) && ::faccessat(folder, path, F_OK, 0) != 0);
    // A full disk still lets a file be opened that is there.
    return writes && (makes || error() != ENOSPC) && fails("open", pathAt(folder, path));
}

/// How many bytes of so many get to the disk; -1 for a failure.
ssize_t allowed(int descriptor, size_t size, off64_t place)
{
    thread_local bool isFull = false;
    struct stat64 file = {};
    if (descriptor <= STDERR_FILENO || ::fstat64(descriptor, &file) != 0 || !S_ISREG(file.st_mode))
        return static_cast<ssize_t>(size);
    const bool replaces = place >= 0 && place + static_cast<off64_t>(size) <= file.st_size;
    if ((replaces && error() == ENOSPC) || !fails("write", pathOf(descriptor)))
        return static_cast<ssize_t>(size);
    isFull = !isFull;
    return error() == ENOSPC && isFull && size > 1 ? static_cast<ssize_t>(size / 2) : -1;
}

/// The time, but hours too late, right and hours too early, in turns of half a second.
time_t jumped(time_t seconds)
{
    timespec steady = {};
    ::syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &steady);
    const time_t turn = (steady.tv_sec * 2 + steady.tv_nsec / 500'000'000) % 3 - 1;
    return seconds + turn * settings().jump;
}

} // namespace

FailingCalls::FailingCalls(int number, std::string folder,
                           std::function<bool(int, const std::string &)> isMeant)
    : error(number)
    , m_folder(std::move(folder) + '/')
    , m_isMeant(std::move(isMeant))
{
    failingCalls = this;
}

FailingCalls::~FailingCalls()
{
    failingCalls = nullptr;
}

bool FailingCalls::meet(const char *call, const std::string &path)
{
    const int before = errno;
    const bool isFault =
        (path + '/').starts_with(m_folder) && m_isMeant(++m_calls, call + (' ' + path));
    errno = isFault ? error : before;
    return isFault;
}

// NOLINTBEGIN(bugprone-macro-parentheses): these are names and lists of parameters.
/// Defines a function of the C library under its own name; "real" is the library's.
#define REPLACE(result, name, parameters, body)                                                    \
    extern "C" result replaced_##name parameters __asm__(#name);                                   \
    result replaced_##name parameters                                                              \
    {                                                                                              \
        static const auto real =                                                                   \
            reinterpret_cast<result(*) parameters>(::dlsym(RTLD_NEXT, #name));                     \
        body                                                                                       \
    }
#define FAILS_OR(failure, call) return failure ? -1 : real call;
#define WITH_64(define, name) define(name) define(name##64)

// The mode is there or is not used.
#define OPEN(name)                                                                                 \
    REPLACE(int, name, (const char *path, int flags, mode_t mode),                                 \
            FAILS_OR(failsToOpen(AT_FDCWD, path, flags), (path, flags, mode)))
#define OPEN_AT(name)                                                                              \
    REPLACE(int, name, (int folder, const char *path, int flags, mode_t mode),                     \
            FAILS_OR(failsToOpen(folder, path, flags), (folder, path, flags, mode)))
#define WRITE_AT(name)                                                                             \
    REPLACE(ssize_t, name, (int file, const void *data, size_t size, off64_t place),               \
            const ssize_t count = allowed(file, size, place);                                      \
            FAILS_OR(count < 0, (file, data, size_t(count), place)))
#define SYNC(name) REPLACE(int, name, (int file), FAILS_OR(fails("sync", pathOf(file)), (file)))
#define TRUNCATE(name)                                                                             \
    REPLACE(int, name, (int file, off64_t size),                                                   \
            FAILS_OR(fails("truncate", pathOf(file)), (file, size)))
#define ALLOCATE(name)                                                                             \
    REPLACE(int, name, (int file, off64_t place, off64_t size),                                    \
            return fails("write", pathOf(file)) ? errno : real(file, place, size);)
// NOLINTEND(bugprone-macro-parentheses)

WITH_64(OPEN, open)
WITH_64(OPEN_AT, openat)
WITH_64(WRITE_AT, pwrite)
WITH_64(TRUNCATE, ftruncate)
WITH_64(ALLOCATE, posix_fallocate)
SYNC(fsync)
SYNC(fdatasync)
REPLACE(int, mkostemp, (char *path, int flags), FAILS_OR(fails("open", path), (path, flags)))
REPLACE(ssize_t, write, (int file, const void *data, size_t size),
        const ssize_t count = allowed(file, size, -1);
        FAILS_OR(count < 0, (file, data, size_t(count))))
REPLACE(int, mkdir, (const char *path, mode_t mode), FAILS_OR(fails("mkdir", path), (path, mode)))
REPLACE(int, rename, (const char *from, const char *to), FAILS_OR(fails("rename", to), (from, to)))
REPLACE(int, linkat, (int folder, const char *from, int target, const char *to, int flags),
        FAILS_OR(fails("rename", pathAt(target, to)), (folder, from, target, to, flags)))
REPLACE(int, renameat, (int folder, const char *from, int target, const char *to),
        FAILS_OR(fails("rename", pathAt(target, to)), (folder, from, target, to)))
REPLACE(int, clock_gettime, (clockid_t clock, timespec *time), const int answer = real(clock, time);
        if (clock == CLOCK_REALTIME) time->tv_sec = jumped(time->tv_sec); return answer;)
REPLACE(int, gettimeofday, (timeval * time, void *zone), const int answer = real(time, zone);
        time->tv_sec = jumped(time->tv_sec); return answer;)
REPLACE(time_t, time, (time_t * into), const time_t now = jumped(real(nullptr));
        return into ? *into = now : now;)

#include "plugin_host/CrashWitness.h"

#include <dlfcn.h>

#include <cstdlib>

// In place of the runtime's own, which it calls: where an exception comes from cannot be told any
// more once somebody has caught it, and the toolkit's threads catch what leaves them only to end
// the process. The name and the form are those of the Itanium C++ ABI.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" [[noreturn]] __attribute__((visibility("default"))) void
__cxa_throw(void *exception, void *type, void (*destructor)(void *))
{
    using Throw = void (*)(void *, void *, void (*)(void *));
    static const auto real = reinterpret_cast<Throw>(::dlsym(RTLD_NEXT, "__cxa_throw"));
    CrashWitness::noteThrow();
    if (real)
        real(exception, type, destructor);
    std::abort();
}

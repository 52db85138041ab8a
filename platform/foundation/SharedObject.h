#pragma once

#include "platform/foundation/ModuleCopy.h"
#include "platform/foundation/Result.h"

#include <QString>

/// The system's loader (dlopen(3)), kept to private copies. Main thread.
namespace SharedObject {

/// Loads the copy of the module at the path for good, with every symbol bound. From then on the
/// loader, and with it dladdr(3), debuggers and sanitizers, knows the module under that path.
/// Libraries that lie where its $ORIGIN leads are loaded before it in the same way, unless others
/// than root and the user could have written them. What the module's constructors throw reaches the
/// caller.
/// @param copy checked by ElfFile::problem().
/// @return the loader's handle. A failure is the loader's own word, with symbols as they are
///         written in C++.
Result<void *> load(const ModuleCopy &copy, const QString &path);

} // namespace SharedObject

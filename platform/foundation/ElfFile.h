#pragma once

#include <QString>

/// A look at a module before the loader maps it (ELF-64, System V ABI).
namespace ElfFile {

/// Why the file cannot be loaded: it is no ELF-64 file, shorter than what its program headers
/// promise, or its tables lead out of it. The loader believes them, and the process would die of
/// that. Null when nothing is wrong with it. Any thread.
QString problem(const QString &path);

} // namespace ElfFile

#pragma once

#include <QString>

/// A look at a module before the loader maps it (ELF-64, System V ABI).
namespace ElfFile {

/// Why the file cannot be mapped whole: it is no ELF-64 file, or shorter than what its program
/// headers promise. The loader would map such a file and the process would die at the first touch.
/// Null when nothing is missing. Any thread.
QString problem(const QString &path);

} // namespace ElfFile

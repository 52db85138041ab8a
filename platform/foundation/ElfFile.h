#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

/// A look at a module before the loader maps it (ELF-64, System V ABI). Any thread.
namespace ElfFile {

/// Why the file cannot be loaded: it is no ELF-64 file, shorter than what its program headers
/// promise, or its tables lead out of it. The loader believes them, and the process would die of
/// that. Null when nothing is wrong with it.
QString problem(QByteArrayView file);

/// The content of the first note of that owner and type; empty when there is none.
/// @param file one without a problem.
QByteArrayView note(QByteArrayView file, QByteArrayView owner, quint32 type);

/// What a module says of its place and of other libraries, as written.
struct Libraries
{
    QList<QByteArray> needed;  ///< DT_NEEDED, in order
    QList<QByteArray> folders; ///< where they are to be looked for: DT_RUNPATH, else DT_RPATH
};

/// @param file one without a problem.
Libraries libraries(QByteArrayView file);

} // namespace ElfFile

#pragma once

#include "platform/foundation/Result.h"

#include <QByteArray>

/// Files whose content is wanted whole, and which anybody may have put there. Any thread.
namespace RegularFile {

/// The content of a regular file, or of one that a link leads to. A folder, pipe or device fails at
/// once, and so does a file of more than so many bytes. Never reads more than that, nor waits for a
/// writer. Failures name the path.
Result<QByteArray> read(const QString &path, qsizetype limit);

} // namespace RegularFile

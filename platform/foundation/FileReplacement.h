#pragma once

#include <QByteArrayView>
#include <QString>

#include <sys/types.h>

#include <optional>
#include <system_error>

/// Puts a regular file of this content in the place of a file, of a link itself (not of what it
/// leads to) or of nothing. Whoever looks finds the old file or the new one, whole and with its
/// permissions, also after the process or the machine has died at any moment: the content has
/// reached the disk before it takes the name (rename(2), POSIX), and the name has reached it when
/// this returns. Waits for the disk, so it does not belong on the main thread where that may be
/// slow. Any thread, any number of them and of processes for the same file; the last one stays.
///
/// Nothing is left beside the file, except by a process that dies just as it gives the new file its
/// name; the next replacement of the same file takes that away.
///
/// @param path as FilePath writes it, of any length. It stays where it is when it is a folder.
/// @param permissions of the new file, exactly; without, those that new files have (umask(2)).
/// @return nothing, or why not, as errno says it. Then what was there is there, whole; only when
///         the last step failed, to have the name reach the disk, it is the new file already.
std::error_code replaceFile(const QString &path, QByteArrayView content,
                            std::optional<mode_t> permissions = std::nullopt);

#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

class mndHelpers;

/// The extended log. Any thread and any process, any number of them. They wait for each other only
/// while one of them removes a file that is too large, and never for long.
namespace LogFile {

/// Above this many bytes the file makes way for a new one.
inline constexpr quint64 sizeLimit = 6'144'000;

enum class Written {
    NotAtAll, ///< no part of it is in the file, but for a blank line at most
    ToTheFile,
    ToANewFile, ///< as its first line
};

/// Time stamp in the locale's short styles, a blank, the message without any " NULL", a line feed.
QString line(const QString &message, const QDateTime &time, const QLocale &locale);

/// Adds the line in UTF-8 with a single write, so that lines of several threads never mix; makes
/// the file and its folder when they are missing. A file beyond the limit is removed first, by the
/// helpers; one that cannot be removed is written to all the same. No line goes with a file that it
/// has not found too large. What a process that was killed has left of a line ends where it is, for
/// which its last character makes room.
/// @param helpers null: no file counts as too large. What it throws reaches the caller.
Written write(const QString &path, const QString &line, mndHelpers *helpers);

} // namespace LogFile

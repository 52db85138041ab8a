#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

/// The log file's lines. Any thread.
namespace LogFile {

/// Time stamp in the locale's short styles, a blank, the message without any " NULL", a line feed.
QString line(const QString &message, const QDateTime &time, const QLocale &locale);

/// Appends the line in UTF-8 with a single write, so that lines of several threads never mix; makes
/// the file and its folder when they are missing. False when the line could not be written whole.
bool append(const QString &path, const QString &line);

} // namespace LogFile

#pragma once

#include "platform/foundation/Result.h"

#include <QHash>
#include <QStringList>

/// A desktop entry file (XDG Desktop Entry format 1.5): its group "Desktop Entry". Any thread.
class DesktopEntry
{
public:
    /// Fails for files that are missing, no regular files, larger than a mebibyte or no UTF-8, and
    /// for those that do not begin with the group. Lines that mean nothing are passed over.
    static Result<DesktopEntry> read(const QString &path);
    static Result<DesktopEntry> parse(const QByteArray &data);

    /// The value with its escapes resolved, not localised; null when there is none.
    QString string(const QString &key) const;
    /// The values of a list, which semicolons end; empty when there is none.
    QStringList strings(const QString &key) const;
    /// The fallback unless the value is "true" or "false".
    bool boolean(const QString &key, bool fallback) const;
    /// The program of "Exec" and its arguments, without those that stand for files and the like.
    /// Empty when there is no such value, or it is quoted wrongly.
    QStringList command() const;

    /// A text as an argument in the value of "Exec", and as any other value.
    static QString quotedArgument(const QString &argument);
    static QString escaped(const QString &value);

private:
    QHash<QString, QString> m_values; ///< as written
};

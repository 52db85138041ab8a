#pragma once

#include <QString>

/// The last component of a path, without regard to slashes at its end. "/" for the root, null for
/// an empty path. Any thread.
inline QString lastPathComponent(QStringView path)
{
    const bool isRooted = path.startsWith(u'/');
    while (path.endsWith(u'/'))
        path.chop(1);
    if (path.isEmpty())
        return isRooted ? QStringLiteral("/") : QString();
    return path.mid(path.lastIndexOf(u'/') + 1).toString();
}

/// What follows the last dot of the last component; null without one. A dot at the very start makes
/// a hidden file, not an extension.
inline QString pathExtension(QStringView path)
{
    const QString name = lastPathComponent(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && dot + 1 < name.size() ? name.mid(dot + 1) : QString();
}

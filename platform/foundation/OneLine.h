#pragma once

#include <QString>

/// Text from anywhere as a message of one line can quote it: without line feeds and other control
/// characters, and shortened.
inline QString oneLine(const QString &text, qsizetype longest)
{
    QString line = text.left(longest);
    for (QChar &c : line)
        c = c.isPrint() || c.isSurrogate() ? c : QChar(u' ');
    return text.size() > longest ? line + u'\u2026' : line;
}

#pragma once

#include <QString>

/// What a bundle says of itself, fit for a terminal and a line: each character that would steer the
/// one or end the other shows as U+FFFD.
inline QString printable(QString text)
{
    for (QChar &each : text) {
        if (each.category() == QChar::Other_Control)
            each = QChar::ReplacementCharacter;
    }
    return text;
}

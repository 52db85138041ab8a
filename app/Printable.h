#pragma once

#include <QString>

/// What a bundle says of itself, fit for a terminal and a line: each character that would steer the
/// one, end the other or turn its direction shows as U+FFFD.
inline QString printable(QString text)
{
    for (QChar &each : text) {
        const char16_t code = each.unicode();
        const bool turns = (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
        if (turns || each.category() == QChar::Other_Control)
            each = QChar::ReplacementCharacter;
    }
    return text;
}

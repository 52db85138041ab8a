#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// The one way between the names of files, which are bytes, and texts. Any thread; nothing fails
/// but encode(), which says how.
///
/// A name is nearly always UTF-8 (RFC 3629). A byte that is no part of it becomes the lone low
/// surrogate U+DC80 + (byte - 0x80), which no UTF-8 yields: every name has a text of its own and
/// comes back from it byte for byte. Do not hand such texts to QFile, which has another way.
namespace FilePath {

namespace Internal {

constexpr char16_t lowestByte = 0xdc80;
constexpr char16_t highestByte = 0xdcff;

/// The length of the well-formed character of several bytes at the start, and the character
/// itself; 0 when there is none.
inline qsizetype character(const uchar *bytes, qsizetype count, char32_t &code)
{
    const uchar first = bytes[0];
    const qsizetype length = first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    if (length == 0 || first > 0xf4 || length > count)
        return 0;
    code = first & (0x7fu >> length);
    for (qsizetype i = 1; i < length; ++i) {
        if ((bytes[i] & 0xc0) != 0x80)
            return 0;
        code = code << 6 | (bytes[i] & 0x3fu);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool surrogate = code >= 0xd800 && code < 0xe000;
    return overlong || surrogate || code > 0x10ffff ? 0 : length;
}

} // namespace Internal

/// Writes the text of the bytes and answers where it ends. There are never more units than bytes,
/// and the room for that many is needed.
inline char16_t *decode(const char *name, qsizetype count, char16_t *out)
{
    const auto *bytes = reinterpret_cast<const uchar *>(name);
    for (qsizetype i = 0; i < count;) {
        if (bytes[i] < 0x80) {
            *out++ = bytes[i++];
            continue;
        }
        char32_t code = 0;
        const qsizetype length = Internal::character(bytes + i, count - i, code);
        if (length == 0) {
            *out++ = static_cast<char16_t>(Internal::lowestByte + (bytes[i++] - 0x80));
            continue;
        }
        i += length;
        if (QChar::requiresSurrogates(code)) {
            *out++ = QChar::highSurrogate(code);
            *out++ = QChar::lowSurrogate(code);
        } else {
            *out++ = static_cast<char16_t>(code);
        }
    }
    return out;
}

inline QString decode(QByteArrayView name)
{
    QString text(name.size(), Qt::Uninitialized);
    auto *begin = reinterpret_cast<char16_t *>(text.data());
    text.truncate(decode(name.data(), name.size(), begin) - begin);
    return text;
}

/// The bytes of the text; null when it can be no file's: it is null or holds U+0000 or a surrogate
/// that stands neither in a pair nor for a byte.
inline QByteArray encode(QStringView text)
{
    if (text.isNull())
        return {};
    QByteArray bytes(text.size() * 3, Qt::Uninitialized);
    char *out = bytes.data();
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t code = text[i].unicode();
        if (code == 0)
            return {};
        if (QChar::isHighSurrogate(code) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            code = QChar::surrogateToUcs4(static_cast<char16_t>(code), text[++i].unicode());
        if (code < 0x80) {
            put(code);
        } else if (code < 0x800) {
            put(0xc0 | code >> 6);
            put(0x80 | (code & 0x3f));
        } else if (code >= Internal::lowestByte && code <= Internal::highestByte) {
            put(code - Internal::lowestByte + 0x80);
        } else if (QChar::isSurrogate(code)) {
            return {};
        } else {
            put(code < 0x10000 ? 0xe0 | code >> 12 : 0xf0 | code >> 18);
            if (code >= 0x10000)
                put(0x80 | (code >> 12 & 0x3f));
            put(0x80 | (code >> 6 & 0x3f));
            put(0x80 | (code & 0x3f));
        }
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

} // namespace FilePath

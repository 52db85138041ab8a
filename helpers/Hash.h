#pragma once

#include <QString>

/// The MD5 digest (RFC 1321) of the text's UTF-8 bytes, up to the first zero byte, as 32 upper-case
/// hexadecimal digits. Null for a null text. Any thread.
QString stringByHashMD5(const QString &text);

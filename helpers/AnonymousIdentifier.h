#pragma once

#include <QString>

#include <optional>

/// The parts of the identifier that tells machines apart without telling which they are. Pure; any
/// thread.
namespace AnonymousIdentifier {

/// The machine's serial number by the bytes of its "serial-number" property: the text after the
/// first run of zero bytes, then the text before it, at most 63 bytes of each. "null" without the
/// property. What is no UTF-8 shows as replacement characters.
QString serialNumber(const std::optional<QByteArray> &property);

/// CRC-32 (ISO-HDLC) of the text's UTF-8 bytes, as many of them as the text has characters, by a
/// table whose entry 12 is not the standard's: issued identifiers depend on that.
quint32 checksum(const QString &text);

/// Upper-case hexadecimal digits, two at least.
QString checksumDigits(quint32 checksum);

/// "anon-", 32 digits of a digest, and the digits of the digest's checksum.
QString forSerialNumber(const QString &serialNumber);

} // namespace AnonymousIdentifier

#pragma once

#include <QString>
#include <QVariantList>

/// Fills the placeholders of a format by position, in order. Pure; any thread.
///
/// Known are %@ (textualDescription), %d %i %u %x %X %02x %02X (32 bits), %ld %lu (64 bits), %1.1f
/// (one decimal, rounded and written as the C library does) and %% (a per cent sign). The format
/// may come from a file, so it is data: a placeholder without an argument and anything unknown stay
/// as written, surplus arguments are dropped. An argument that is text where a number is wanted,
/// and does not read as one, is written as it is.
QString format(const QString &format, const QVariantList &arguments);

/// What a person reads for a value: texts as they are, booleans as 1 and 0, dates in UTC,
/// collections as "(a, b)" and "{key = value; }", data as "<0fbd77>", nothing as "(null)".
QString textualDescription(const QVariant &value);

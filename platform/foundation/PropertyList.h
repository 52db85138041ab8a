#pragma once

#include "platform/foundation/Result.h"

#include <QByteArray>
#include <QVariant>

/// Reads property lists in any of their three forms: XML, binary ("bplist00"), and text (old-style,
/// with or without the outer braces, as in files of `key = "text";` pairs).
///
/// Texts become QString, booleans bool, integers qlonglong (qulonglong above its range, and for
/// uids), reals double, dates QDateTime in UTC, data QByteArray, arrays QVariantList, dictionaries
/// QVariantMap. Text and XML may be UTF-8 or UTF-16, with or without a byte order mark. A key given
/// twice has its last value. Blank text is an empty dictionary; no bytes at all is a failure.
///
/// Lists beyond PropertyListLimits are refused. Any thread. Failures say what is wrong, and in text
/// and XML in which line.
namespace PropertyList {

Result<QVariant> parse(const QByteArray &data);

/// Only a regular file (or a link to one) is read: a folder, pipe or device is a failure at once.
Result<QVariant> read(const QString &path);

} // namespace PropertyList

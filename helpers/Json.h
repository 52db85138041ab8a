#pragma once

#include <QString>
#include <QVariant>

/// JSON (RFC 8259) to and from plain values. Pure; any thread, on a stack of 256 KiB or more.
namespace Json {

/// Arrays and objects inside each other; what is deeper is refused in both directions.
constexpr int depthLimit = 512;

/// An array as QVariantList or an object as QVariantMap; invalid for any other text, however small
/// its fault: the grammar is kept to the letter. A byte order mark before it is passed over (8.1).
///
/// Texts are QString, true and false bool, null QVariant::fromValue(nullptr). Numbers written
/// without a fraction and an exponent are qlonglong, above its range qulonglong, beyond 64 bits
/// double, as are all others; those too small for a double are 0. A number too large for one is a
/// fault, as is half a surrogate pair, written or escaped. A key given twice has its last value.
QVariant decoded(const QString &text);

/// Compact text of an array (QVariantList, QStringList, StringArray) or an object (QVariantMap,
/// QVariantHash, Dictionary), keys in the order of their UTF-16 units, slashes unescaped.
///
/// Inside there may be those, texts (a null one is empty), booleans, integers of up to 64 bits
/// (exact), finite reals, nullptr; invalid values and absent dictionaries are null. Anything else,
/// half a surrogate pair and a dictionary within itself make the whole result null.
QString encoded(const QVariant &object);

} // namespace Json

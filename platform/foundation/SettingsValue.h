#pragma once

#include <QByteArray>
#include <QVariant>

/// A value as what stands behind "=" in a settings file, in the form that QSettings reads and
/// writes as well, but every value keeps its type. Any thread.
namespace SettingsValue {

QByteArray encoded(const QVariant &value);

/// One that is of no known type is a text, several with commas between are a list of texts.
QVariant decoded(const QByteArray &entry);

/// One that was cut off in quotes or behind a backslash as a text that ends with its line.
QByteArray closed(const QByteArray &entry);

} // namespace SettingsValue

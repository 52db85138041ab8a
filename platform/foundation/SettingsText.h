#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// Settings as the text of an INI file that QSettings reads and writes as well, made in memory:
/// QSettings itself does not say when a disk had no room, and waits for lock files beside its own
/// that others have left. Any thread.
namespace SettingsText {

/// By key, as the file has them: what SettingsValue reads, which is kept as it is as long as nobody
/// changes the value, so that one that is not understood stays whole.
using Entries = QMap<QString, QByteArray>;

struct Parsed
{
    Entries entries;
    bool isWhole = true; ///< false when there were lines that mean nothing
};

/// A key in a group is "group/key". A text that is none of ours has as many entries as can be made
/// out.
Parsed parse(const QByteArray &text);

/// All of them in one group.
QByteArray text(const Entries &entries);

} // namespace SettingsText

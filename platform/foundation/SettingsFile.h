#pragma once

#include "platform/foundation/SettingsText.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>

/// What is to become of a settings file.
struct SettingsChanges
{
    /// Everything goes that was there before.
    bool isClearedFirst = false;
    /// By key; nothing stands for removed.
    QMap<QString, std::optional<QVariant>> values;

    bool isEmpty() const { return !isClearedFirst && values.isEmpty(); }
    /// As if these had been made first and the others then.
    void follow(const SettingsChanges &later);
};

/// A settings file that several processes may write: each changes what it changed, one after the
/// other, and the file is old or new, whole, at every moment. One thread at a time.
class SettingsFile
{
public:
    explicit SettingsFile(QString path)
        : m_path(std::move(path))
    { }

    const QString &path() const { return m_path; }

    /// All that can be read; nothing of a file that is missing.
    /// @param problem is set when there is something that cannot be read
    QHash<QString, QVariant> read(QString &problem);

    /// Makes the changes in what the file holds now, and waits for the disk. Fails rather than wait
    /// for long while another process writes; then the file is as it was. A file that could not be
    /// understood is kept beside the new one, with ".damaged" after its name.
    /// @return what went wrong; null when nothing did
    QString change(const SettingsChanges &changes);

private:
    const QString m_path;
    QByteArray m_keptDamaged; ///< what was kept last, lest every try keep it again
};

#pragma once

#include "platform/foundation/Snapshots.h"
#include "platform/foundation/SystemServices.h"

#include <QHash>
#include <QMap>

#include <optional>

/// User defaults in one INI file, in which every value keeps its type.
///
/// Reading takes no lock and touches no disk: readers see an immutable snapshot that a change
/// replaces. Changes are made on the main thread, and wait for it when they come from another.
/// They reach the disk in synchronize(); those not written by then are written when this object is
/// destroyed. An empty key holds nothing.
class RealUserDefaults : public UserDefaults
{
public:
    /// The user's own file: solvane.conf in the folder Solvane of the XDG configuration folder
    /// (XDG Base Directory).
    static QString defaultFilePath();

    /// Reads the file; one that is missing is made at the first synchronize().
    explicit RealUserDefaults(const QString &filePath = defaultFilePath());
    ~RealUserDefaults() override;

    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    void removeValue(const QString &key) override;
    QStringList keys() const override;
    /// When it fails the changes are kept for the next try, and the file is as it was. A file that
    /// could not be understood is kept beside the new one, with ".damaged" after its name.
    bool synchronize() override;

private:
    using Values = QHash<QString, QVariant>;

    void change(const QString &key, const std::optional<QVariant> &value);
    bool keepDamagedFile();
    bool write();

    const QString m_filePath;
    Snapshots<Values> m_values;
    /// What is not on disk yet; nothing stands for removed.
    QMap<QString, std::optional<QVariant>> m_pending;
    bool m_fileIsDamaged = false;
};

#pragma once

#include "platform/foundation/Snapshots.h"
#include "platform/foundation/SystemServices.h"

#include <QHash>
#include <QMap>

#include <chrono>
#include <optional>

/// User defaults in one INI file, in which every value keeps its type.
///
/// Reading takes no lock and touches no disk: readers see an immutable snapshot that a change
/// replaces. Changes are made on the main thread, and wait for it when they come from another.
/// They reach the disk in synchronize(); those not written by then are written when this object is
/// destroyed. An empty key holds nothing.
///
/// Several processes may write the same file: each changes what it changed, one after the other.
class RealUserDefaults : public UserDefaults
{
public:
    /// The user's own file: solvane.conf in the folder Solvane of the XDG configuration folder
    /// (XDG Base Directory).
    static QString defaultFilePath();

    /// Reads the file; one that is missing is made at the first synchronize().
    /// @param log is told why the file could not be read or written; outlives this. May be null.
    explicit RealUserDefaults(const QString &filePath = defaultFilePath(),
                              SystemLog *log = nullptr);
    ~RealUserDefaults() override;

    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    void removeValue(const QString &key) override;
    QStringList keys() const override;
    /// Fails rather than wait for long while another process writes. When it fails the changes are
    /// kept for the next try, and the file is as it was. A file that could not be understood is
    /// kept beside the new one, with ".damaged" after its name.
    bool synchronize() override;

private:
    using Values = QHash<QString, QVariant>;

    void change(const QString &key, const std::optional<QVariant> &value);
    void tell(const QString &message) const;
    bool write(std::chrono::milliseconds longest);
    /// These answer what went wrong; null when nothing did.
    QString replaceFile(std::chrono::milliseconds longest);
    QString keepDamagedFile(const QString &target);
    /// Makes the changes in a file that is nobody else's. Nothing when that failed, else whether
    /// there was anything to change.
    std::optional<bool> changeFile(const QString &path) const;

    const QString m_filePath;
    SystemLog *const m_log;
    Snapshots<Values> m_values;
    /// What is not on disk yet; nothing stands for removed.
    QMap<QString, std::optional<QVariant>> m_pending;
    bool m_fileIsDamaged = false;
};

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// A mounted file system that holds files of the user or the system.
struct Volume
{
    QString path;   ///< where it is mounted
    QString source; ///< its device or server
    QString type;   ///< "ext4"
    bool readOnly = false;

    friend bool operator==(const Volume &, const Volume &) = default;
};

/// The real volumes among all mounts, in the order of their paths, "/" first.
///
/// Left out are the kernel's own file systems, memory disks, squashfs images and overlays (except
/// as "/"), and all but one mount of the same device: bind mounts show the same space again.
///
/// @param mountinfo the text of /proc/self/mountinfo, proc(5).
std::vector<Volume> parseVolumes(const QByteArray &mountinfo);

/// Space in bytes. As `df` gives it: used and available need not add up to the size, since some of
/// it is reserved for the administrator.
struct VolumeUsage
{
    quint64 size = 0;
    quint64 used = 0;
    quint64 available = 0;

    /// Used per cent of what users may use, rounded up.
    int percent() const;

    friend bool operator==(const VolumeUsage &, const VolumeUsage &) = default;
};

/// Asks the file system mounted at the path, as long as that may take. Any thread.
/// @return nothing when it does not tell.
std::optional<VolumeUsage> readUsage(const QString &path);

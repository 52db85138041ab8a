#include "Volumes.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <limits>
#include <sys/statvfs.h>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

struct Mount
{
    QByteArray device; ///< "8:1"; the same for all mounts of one file system
    QByteArray root;   ///< folder of the file system that is mounted: "/" unless it is a bind mount
    Volume volume;
};

/// Blanks, line ends and backslashes are written as three octal digits.
QString unescape(const QByteArray &field)
{
    QByteArray plain;
    for (qsizetype i = 0; i < field.size(); ++i) {
        bool ok = false;
        const int code =
            field[i] == '\\' && i + 3 < field.size() ? field.mid(i + 1, 3).toInt(&ok, 8) : 0;
        plain += ok ? char(code) : field[i];
        i += ok ? 3 : 0;
    }
    return QFile::decodeName(plain);
}

std::optional<Mount> parseMount(const QByteArray &line)
{
    // id parent device root path options [optional ...] - type source superblock-options
    const QList<QByteArray> fields = line.split(' ');
    const qsizetype dash = fields.indexOf("-", 6);
    if (dash < 0 || dash + 2 >= fields.size())
        return std::nullopt;
    Mount mount;
    mount.device = fields[2];
    mount.root = fields[3];
    mount.volume.path = unescape(fields[4]);
    mount.volume.type = QString::fromUtf8(fields[dash + 1]);
    mount.volume.source = unescape(fields[dash + 2]);
    const auto isReadOnly = [](const QByteArray &options) {
        return options.split(',').contains("ro");
    };
    mount.volume.readOnly = isReadOnly(fields[5]) || isReadOnly(fields.value(dash + 3));
    return mount;
}

bool isReal(const Volume &volume)
{
    if (volume.path == u"/"_s)
        return volume.type != u"rootfs"_s;
    static const QSet<QString> kernelTypes = {u"autofs"_s,
                                              u"binder"_s,
                                              u"binfmt_misc"_s,
                                              u"bpf"_s,
                                              u"cgroup"_s,
                                              u"cgroup2"_s,
                                              u"configfs"_s,
                                              u"debugfs"_s,
                                              u"devpts"_s,
                                              u"devtmpfs"_s,
                                              u"efivarfs"_s,
                                              u"fusectl"_s,
                                              u"hugetlbfs"_s,
                                              u"mqueue"_s,
                                              u"nfsd"_s,
                                              u"nsfs"_s,
                                              u"overlay"_s,
                                              u"proc"_s,
                                              u"pstore"_s,
                                              u"ramfs"_s,
                                              u"resctrl"_s,
                                              u"rootfs"_s,
                                              u"rpc_pipefs"_s,
                                              u"securityfs"_s,
                                              u"selinuxfs"_s,
                                              u"smackfs"_s,
                                              u"squashfs"_s,
                                              u"sysfs"_s,
                                              u"tmpfs"_s,
                                              u"tracefs"_s,
                                              u"fuse.lxcfs"_s,
                                              u"aufs"_s,
                                              u"erofs"_s,
                                              u"fuse.portal"_s,
                                              u"fuse.snapfuse"_s,
                                              u"fuse.gvfsd-fuse"_s,
                                              u"fuse.squashfuse"_s,
                                              u"fuse.overlayfs"_s,
                                              u"fuse.fuse-overlayfs"_s};
    return !kernelTypes.contains(volume.type);
}

/// Whether the first of two mounts of one file system stands for it.
bool standsFor(const Mount &a, const Mount &b)
{
    const auto rank = [](const Mount &mount) {
        return std::tuple(mount.volume.path != u"/"_s, mount.root.size(), mount.volume.path.size(),
                          mount.volume.path);
    };
    return rank(a) < rank(b);
}

} // namespace

std::vector<Volume> parseVolumes(const QByteArray &mountinfo)
{
    // What is mounted later over the same folder hides what was there.
    QHash<QString, Mount> byPath;
    for (const QByteArray &line : mountinfo.split('\n')) {
        if (auto mount = parseMount(line))
            byPath.insert(mount->volume.path, *mount);
    }
    QHash<QByteArray, Mount> byDevice;
    for (const Mount &mount : std::as_const(byPath)) {
        if (!isReal(mount.volume))
            continue;
        const auto known = byDevice.constFind(mount.device);
        if (known == byDevice.constEnd() || standsFor(mount, *known))
            byDevice.insert(mount.device, mount);
    }
    std::vector<Volume> volumes;
    for (const Mount &mount : std::as_const(byDevice))
        volumes.push_back(mount.volume);
    std::sort(volumes.begin(), volumes.end(),
              [](const Volume &a, const Volume &b) { return a.path < b.path; });
    return volumes;
}

int VolumeUsage::percent() const
{
    quint64 part = used;
    quint64 usable = used + available;
    for (; part > std::numeric_limits<quint64>::max() / 200; part /= 2)
        usable /= 2;
    return usable == 0 ? 0 : int((part * 100 + usable - 1) / usable);
}

std::optional<VolumeUsage> readUsage(const QString &path)
{
    struct statvfs answer = {};
    if (statvfs(QFile::encodeName(path).constData(), &answer) != 0 || answer.f_blocks == 0)
        return std::nullopt;
    const quint64 unit = answer.f_frsize ? answer.f_frsize : answer.f_bsize;
    VolumeUsage usage;
    usage.size = answer.f_blocks * unit;
    usage.used = (answer.f_blocks - std::min(answer.f_bfree, answer.f_blocks)) * unit;
    usage.available = answer.f_bavail * unit;
    return usage;
}

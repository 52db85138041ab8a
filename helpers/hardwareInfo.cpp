#include "helpers/hardwareInfo.h"

#include "platform/foundation/FilePlace.h"
#include "platform/foundation/SystemServices.h"

#include <sys/statvfs.h>

namespace {

const MachineFacts &facts()
{
    return *systemServices().machineFacts;
}

/// Nothing for a path that leads nowhere.
std::optional<struct statvfs> volumeOf(const QString &path)
{
    const FilePlace place = FilePlace::of(path);
    const FileDescriptor item(
        uninterrupted([&] { return ::openat(place.folder(), place.path(), O_PATH | O_CLOEXEC); }));
    struct statvfs volume;
    if (!item.isOpen() || ::fstatvfs(item.number(), &volume) != 0)
        return std::nullopt;
    return volume;
}

} // namespace

QString hardwareInfo::modelName()
{
    return facts().modelName();
}

QString hardwareInfo::osVersion()
{
    return facts().osVersion();
}

QString hardwareInfo::osLanguage()
{
    return systemServices().languages->preferred().value(0);
}

int hardwareInfo::cpuCount()
{
    return facts().cpuCount().value_or(1);
}

int hardwareInfo::cpuSpeed()
{
    return facts().cpuSpeed().value_or(0);
}

int hardwareInfo::ramSize()
{
    return facts().ramSize().value_or(0);
}

quint64 hardwareInfo::hdSize(const QString &path)
{
    const auto volume = volumeOf(path);
    return volume ? quint64(volume->f_blocks) * volume->f_frsize : 0;
}

quint64 hardwareInfo::hdFree(const QString &path)
{
    // What is kept back for the administrator is of no use to the user.
    const auto volume = volumeOf(path);
    return volume ? quint64(volume->f_bavail) * volume->f_frsize : 0;
}

#include "platform/foundation/RealMachine.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestProperty = 4096;

// What only some users may read would give them another identifier than the others.
std::optional<QByteArray> contentForEverybody(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.permission(QFile::ReadOther))
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.read(largestProperty);
}

// machine-id(5): 32 lower-case hexadecimal digits. While a system is set up it may hold another
// word, the same on every machine.
bool isMachineId(const QByteArray &text)
{
    return text.size() == 32 && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

} // namespace

RealDeviceTree::RealDeviceTree(const QString &root)
    : m_root(root)
{ }

std::optional<QByteArray> RealDeviceTree::serialNumber() const
{
    for (const auto &path :
         {u"proc/device-tree/serial-number"_s, u"sys/firmware/devicetree/base/serial-number"_s}) {
        if (auto property = contentForEverybody(m_root + path))
            return property;
    }
    // Machines without a device tree.
    for (const auto &path : {u"etc/machine-id"_s, u"var/lib/dbus/machine-id"_s}) {
        const QByteArray id = contentForEverybody(m_root + path).value_or(QByteArray()).trimmed();
        if (isMachineId(id))
            return id;
    }
    return std::nullopt;
}

#pragma once

#include "platform/foundation/SystemServices.h"

/// The machine as the running program finds it.

/// From the firmware (DMI, device tree), os-release(5) and the kernel's files. Each call reads.
class RealMachineFacts : public MachineFacts
{
public:
    /// @param root folder that stands for "/"; without a slash at its end.
    explicit RealMachineFacts(const QString &root = {});

    /// The maker and the model, in at most 255 bytes of UTF-8.
    QString modelName() const override;
    /// As "Debian GNU/Linux 12 (bookworm), Linux 6.1.0-18-amd64".
    QString osVersion() const override;
    /// Those that run at the same time: threads of cores, where a core has more than one.
    std::optional<int> cpuCount() const override;
    /// The highest clock; where the kernel does not tell it, the one of now.
    std::optional<int> cpuSpeed() const override;
    std::optional<int> ramSize() const override;

private:
    const QString m_root;
};

/// The firmware's device tree, or systemd's machine-id(5) where there is none. Only what every user
/// of the machine may read is looked at, so that all get the same answer.
class RealDeviceTree : public DeviceTree
{
public:
    /// @param root the folder, with its last slash, that the system's files are looked up in.
    explicit RealDeviceTree(const QString &root = QStringLiteral("/"));
    std::optional<QByteArray> serialNumber() const override;

private:
    QString m_root;
};

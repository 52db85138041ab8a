#pragma once

#include <QString>

/// What does not change while the machine runs. A text that the machine does not give is empty, a
/// number 0.
struct SystemFacts
{
    QString hostName;
    QString model;     ///< maker and model, from the firmware (DMI or device tree)
    QString system;    ///< PRETTY_NAME of os-release(5)
    QString kernel;    ///< as `uname -sr` gives it
    QString processor; ///< name of the first processor
    int cores = 0;     ///< cores of all processors
    int threads = 0;   ///< what runs at the same time: at least the cores
};

/// Reads the files of the kernel and the distribution. Any thread.
/// @param root folder that stands for "/"; without a slash at its end.
SystemFacts readSystemFacts(const QString &root);

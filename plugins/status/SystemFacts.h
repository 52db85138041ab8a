#pragma once

#include <QString>

class mndCore;

/// What does not change while the machine runs. A text that the machine does not give is empty, a
/// number 0.
struct SystemFacts
{
    QString hostName;
    QString model;     ///< maker and model, from the firmware (DMI or device tree)
    QString system;    ///< the distribution and its version
    QString kernel;    ///< as `uname -sr` gives it
    QString processor; ///< name of the first processor
    int cores = 0;     ///< cores of all processors
    int threads = 0;   ///< what runs at the same time: at least the cores
};

/// What the host tells: the model, the system and the threads. Takes the time of reading a few
/// small files. Main thread, since a thread of ours may outlive the host.
SystemFacts hostFacts(mndCore *core);

/// Adds what the kernel's files tell beyond that. Any thread.
/// @param root folder that stands for "/"; without a slash at its end.
SystemFacts readSystemFacts(const QString &root, SystemFacts facts);

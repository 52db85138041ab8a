#pragma once

#include "helpers/HelperProtocols.h"

#include <QObject>

/// Facts about the machine, each read when it is asked for. Holds no state: any thread.
class hardwareInfo : public QObject, public hardwareInfoProtocol
{
    Q_OBJECT
    Q_INTERFACES(hardwareInfoProtocol)

public:
    Q_INVOKABLE hardwareInfo() = default;

    // hardwareInfoProtocol
    Q_INVOKABLE QString modelName() override;
    Q_INVOKABLE QString osVersion() override;
    Q_INVOKABLE QString osLanguage() override;
    Q_INVOKABLE int cpuCount() override;
    Q_INVOKABLE int cpuSpeed() override;
    Q_INVOKABLE int ramSize() override;
    Q_INVOKABLE quint64 hdSize(const QString &path) override;
    Q_INVOKABLE quint64 hdFree(const QString &path) override;
};

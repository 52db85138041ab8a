#pragma once

#include "helpers/HelperProtocols.h"

#include <QObject>

/// Walks folders. Plugins make it by its class's name. Any number may work at once, each on its
/// caller's thread.
class fileEnum : public QObject, public fileEnumProtocol
{
    Q_OBJECT
    Q_INTERFACES(fileEnumProtocol)

public:
    Q_INVOKABLE fileEnum() = default;

    Q_INVOKABLE void enumAtPath(const QString &path, FileRecords *result) override;
    /// The delegate may end its own life meanwhile, on the same thread. What it throws ends in the
    /// system log, once a walk, and it is sent the other records all the same.
    Q_INVOKABLE void enumAtPathEx(const QString &path, FileRecords *result,
                                  QObject *delegate) override;
};

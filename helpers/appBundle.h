#pragma once

#include "helpers/HelperProtocols.h"

#include <QObject>

/// What an application's folder says about it. Every question reads its Info.plist anew, in any
/// form of property list and within PropertyListLimits. Holds no state: any thread.
class appBundle : public QObject, public appBundleProtocol, public appBundleInfoProtocol
{
    Q_OBJECT
    Q_INTERFACES(appBundleProtocol appBundleInfoProtocol)

public:
    Q_INVOKABLE appBundle() = default;

    // appBundleProtocol
    Q_INVOKABLE QString getManifestPath(const QString &bundle) override;
    Q_INVOKABLE QString getIconPath(const QString &bundle) override;
    Q_INVOKABLE QString getAppName(const QString &bundle) override;
    Q_INVOKABLE QString getExecutablePath(const QString &bundle) override;
    Q_INVOKABLE QString getInfoString(const QString &bundle) override;
    Q_INVOKABLE QString getBundleID(const QString &bundle) override;
    Q_INVOKABLE QString getShortVersion(const QString &bundle) override;
    Q_INVOKABLE QString getAppPathFromExecutablePath(const QString &executable) override;

    // appBundleInfoProtocol
    Q_INVOKABLE QVariantMap getManifest(const QString &bundle) override;
};

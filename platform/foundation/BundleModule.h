#pragma once

#include "platform/foundation/Result.h"

#include <QJsonObject>
#include <QPluginLoader>

#include <optional>

class QObject;

/// The code of a bundle: a Qt plugin module with its embedded metadata.
///
/// The metadata is read from the file without running any of its code. A module that was loaded
/// stays loaded until the process ends. Any thread may read the metadata, one at a time; the rest
/// is for the main thread.
class BundleModule
{
public:
    /// What the module says of itself.
    struct Metadata
    {
        QString interfaceId; ///< the role of its root object
        int apiVersion = 0;  ///< host API the module was built for; 0 when it names none
        QString qtVersion;   ///< "6.4.2"
    };

    explicit BundleModule(const QString &modulePath);

    /// Fails for a missing file, one that is no module, and one without metadata. Read once.
    Result<Metadata> metadata();

    /// Loads the module with every symbol bound and makes its root object, which the caller owns.
    /// Fails when the module cannot be loaded, and when its object is in use already: two bundles
    /// can lead to the same file. What the object's constructor throws reaches the
    /// caller.
    Result<QObject *> makePrincipalObject();

    /// Whether makePrincipalObject() failed for the reason that the object is in use.
    bool isInUse() const { return m_isInUse; }

private:
    Result<Metadata> readMetadata();

    bool m_isInUse = false;
    std::optional<Result<Metadata>> m_metadata;
    QString m_path;
    QPluginLoader m_loader;
};

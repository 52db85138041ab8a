#pragma once

#include "platform/foundation/ModuleCopy.h"
#include "platform/foundation/Result.h"

#include <QString>

#include <optional>

class QObject;

/// The code of a bundle: a Qt plugin module with its embedded metadata.
///
/// Both come from a private copy of the file, made when the metadata is first asked for: what
/// happens to the file from then on does not reach the program. The metadata is read without
/// running any of the module's code. A module that was loaded stays loaded until the process ends.
/// Any thread may read the metadata, one at a time; the rest is for the main thread.
class BundleModule
{
public:
    /// What the module says of itself.
    struct Metadata
    {
        QString interfaceId; ///< the role of its root object
        int apiVersion = 0;  ///< host API the module was built for; 0 when it names none
        QString qtVersion;   ///< "6.4"
    };

    explicit BundleModule(const QString &modulePath);

    /// Fails for a missing file, one that is no module, one without metadata, and one that was made
    /// for a Qt that this one cannot stand in for. Read once.
    Result<Metadata> metadata();

    /// Loads the module with every symbol bound and makes its root object, which the caller owns;
    /// once. Fails when the module cannot be loaded, and when its object is in use already: two
    /// bundles can lead to the same file. What the object's constructor throws reaches the caller.
    Result<QObject *> makePrincipalObject();

    /// Whether makePrincipalObject() failed for the reason that the object is in use.
    bool isInUse() const { return m_isInUse; }

private:
    Result<Metadata> readMetadata();

    bool m_isInUse = false;
    std::optional<Result<Metadata>> m_metadata;
    QString m_path;
    std::optional<ModuleCopy> m_copy; ///< until it is loaded
};

#pragma once

#include "SolvanePlugin.h"

#include <QString>

#include <vector>

/// What a bundle says of itself.
struct BundleVersion
{
    QString name;       ///< CFBundleName, or the folder's name without ".bundle"
    QString version;    ///< CFBundleVersion; empty when its Info.plist cannot be read
    bool added = false; ///< not part of the application
};

/// Reads the bundles directly inside both folders, each folder's in the order of their names.
/// Folders that are missing have no bundles. Any thread.
/// @param reader of their Info.plists; without one nothing is known of them but their folders
/// @param own folder of the application's bundles
/// @param added folder of the bundles that the user has added
std::vector<BundleVersion> readBundleVersions(appBundleInfoProtocol *reader, const QString &own,
                                              const QString &added);

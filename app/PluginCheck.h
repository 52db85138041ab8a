#pragma once

#include "app/CommandLine.h"

#include <QTextStream>

/// Checks one bundle in a process of its own and passes on what that says: whatever the plugin's
/// code does, its line is said and the next bundle has its turn. A process that a plugin takes down
/// leaves the name of the culprit in a breadcrumb; one that does not end is ended.
/// @return the exit status: 0 when nothing is wrong with the bundle.
int checkInItsOwnProcess(const CommandLine &commandLine, const QString &bundle, QTextStream &out);

/// The same for the list of all plugins.
/// @return 1 when a plugin took the process down.
int listInItsOwnProcess(const CommandLine &commandLine, QTextStream &out);

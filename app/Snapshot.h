#pragma once

#include <QString>

class mndAppDelegate;

/// Prints the sidebar's rows and saves a picture of the main window.
/// @return the exit status: 0 when the picture was saved.
int takeSnapshot(const mndAppDelegate &delegate, const QString &path);

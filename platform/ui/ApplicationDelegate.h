#pragma once

#include <QString>
#include <QtPlugin>

class QObject;

/// Told of the application's life. Main thread.
class ApplicationDelegate
{
public:
    virtual ~ApplicationDelegate() = default;

    virtual void applicationDidFinishLaunching() = 0;
    /// The user asked for the application although it is running already.
    /// @return whether the platform may do the rest.
    virtual bool applicationShouldHandleReopen(QObject *application, bool hasVisibleWindows) = 0;
    /// @return whether the document is accepted.
    virtual bool applicationOpenFile(QObject *application, const QString &path) = 0;
    /// Sent once, on the normal way out.
    virtual void applicationWillTerminate() = 0;
};

#define ApplicationDelegate_iid "com.solvane.ApplicationDelegate/6"
Q_DECLARE_INTERFACE(ApplicationDelegate, ApplicationDelegate_iid)

/// The one object that stands for the application; null before it is made. Not owned.
QObject *applicationDelegate();
void setApplicationDelegate(QObject *delegate);

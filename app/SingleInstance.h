#pragma once

#include <QObject>
#include <QStringList>

class Application;

/// One running program per user, over the session bus (org.freedesktop.Application, XDG Desktop
/// Entry). Main thread.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum Role {
        First,  ///< this process answers later launches from now on
        Second, ///< another process is running
        Alone,  ///< there is no session bus: nobody can be asked
    };

    explicit SingleInstance(Application &application);

    /// Claims the program's name on the bus.
    Role claim();

    /// For the second: has the first bring its window forward, or open the documents.
    /// @return false when it did not answer within a few seconds.
    static bool passOn(const QStringList &documents);

private:
    Application &m_application;
};

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <memory>

class Application;
class QDBusServer;

/// One running program per user and desktop (org.freedesktop.Application, XDG Desktop Entry), over
/// the session bus; without one, over a socket in the user's runtime folder (XDG Base Directory).
/// Main thread.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum Role {
        First,  ///< this process answers later launches from now on
        Second, ///< another process is running
        Alone,  ///< there is neither a bus nor a folder: nobody can be asked
    };

    explicit SingleInstance(Application &application);
    ~SingleInstance() override;
    Q_DISABLE_COPY_MOVE(SingleInstance)

    Role claim();

    /// For the second: has the first bring its window forward, or open the documents.
    /// @return false when it did not answer within a few seconds.
    bool passOn(const QStringList &documents);

private:
    Role claimName();
    Role claimSocket();

    Application &m_application;
    QDBusConnection m_first{QString()};    ///< on which the first is reached
    std::unique_ptr<QDBusServer> m_server; ///< for later launches, without a bus
};

#include "app/SingleInstance.h"

#include "platform/ui/Application.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServer>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <QUrl>
#include <QUuid>
#include <QVariantMap>

#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int answerTimeout = 5000; // milliseconds

QString serviceName()
{
    return u"com.solvane.Solvane"_s;
}

QString objectPath()
{
    return u"/com/solvane/Solvane"_s;
}

/// The socket of the desktop that this process is on: a window elsewhere is of no use here.
/// Empty without a folder that is the user's alone.
QString socketPath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QFileInfo place(folder);
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    // The toolkit warns of a folder that others may reach into, and goes on.
    if (!place.isDir() || place.ownerId() != ::geteuid() || (place.permissions() & others))
        return {};
    const bool isWayland = QGuiApplication::platformName().startsWith("wayland"_L1);
    const QByteArray desktop = qgetenv(isWayland ? "WAYLAND_DISPLAY" : "DISPLAY");
    return folder.isEmpty()
        ? QString()
        : folder + u"/solvane-"_s + QString::fromLatin1(desktop.toPercentEncoding());
}

/// What the desktop needs to let the window come forward although another has the focus, in the
/// environment, where the toolkit looks for it, and only as long as it looks.
class ActivationToken
{
public:
    explicit ActivationToken(const QVariantMap &platformData)
    {
        const QByteArray token = platformData.value(u"activation-token"_s).toString().toUtf8();
        if (isSound(token))
            qputenv(variable, token);
    }
    ~ActivationToken() { qunsetenv(variable); }
    Q_DISABLE_COPY_MOVE(ActivationToken)

private:
    /// Anybody on the bus may send one. A variable of 128 KiB keeps every program from starting.
    static bool isSound(const QByteArray &token)
    {
        constexpr qsizetype longest = 1024; // they are made of a name or two and some numbers
        return token.size() <= longest && std::all_of(token.cbegin(), token.cend(), [](char each) {
                   return each > ' ' && each <= '~';
               });
    }

    static constexpr const char *variable = "XDG_ACTIVATION_TOKEN";
};

class ApplicationInterface : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationInterface(QObject *parent, Application &application)
        : QDBusAbstractAdaptor(parent)
        , m_application(application)
    { }

public Q_SLOTS:
    void Activate(const QVariantMap &platform_data)
    {
        const ActivationToken token(platform_data);
        m_application.reopen();
    }

    void Open(const QStringList &uris, const QVariantMap &platform_data)
    {
        for (const QString &uri : uris)
            m_application.openFile(QUrl(uri).toLocalFile());
        Activate(platform_data);
    }

    void ActivateAction(const QString &, const QVariantList &, const QVariantMap &platform_data)
    {
        // The desktop entry declares no actions: whatever was meant, the window is the answer.
        Activate(platform_data);
    }

private:
    Application &m_application;
};

} // namespace

SingleInstance::SingleInstance(Application &application)
    : m_application(application)
{
    new ApplicationInterface(this, m_application);
}

SingleInstance::~SingleInstance()
{
    QDBusConnection::disconnectFromPeer(m_first.name());
}

SingleInstance::Role SingleInstance::claim()
{
    m_first = QDBusConnection::sessionBus();
    const Role role = m_first.isConnected() ? claimName() : Alone;
    return role == Alone ? claimSocket() : role;
}

SingleInstance::Role SingleInstance::claimName()
{
    // The object first: from the moment the name is ours, anybody may call.
    if (!m_first.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors))
        return Alone;
    const auto reply = m_first.interface()->registerService(
        serviceName(), QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid())
        return Alone;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? First : Second;
}

/// The bus's protocol without a bus. Looking for somebody who answers and taking the place is one
/// step, by the lock. A socket where nobody does was left behind; the library puts its own there.
SingleInstance::Role SingleInstance::claimSocket()
{
    const QString path = socketPath();
    QLockFile claiming(path + u".lock"_s);
    if (path.isEmpty() || !claiming.tryLock(answerTimeout))
        return Alone;
    const QString address =
        u"unix:path="_s + QString::fromLatin1(QFile::encodeName(path).toPercentEncoding("/", "~"));
    m_first = QDBusConnection::connectToPeer(address, QUuid::createUuid().toString());
    if (m_first.isConnected())
        return Second;
    m_server = std::make_unique<QDBusServer>(address);
    connect(m_server.get(), &QDBusServer::newConnection, this, [this](QDBusConnection launch) {
        launch.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors);
    });
    return m_server->isConnected() ? First : Alone;
}

bool SingleInstance::passOn(const QStringList &documents)
{
    const QVariantMap platformData{
        {u"activation-token"_s, qEnvironmentVariable("XDG_ACTIVATION_TOKEN")},
        {u"desktop-startup-id"_s, qEnvironmentVariable("DESKTOP_STARTUP_ID")},
    };
    const bool isOnBus = m_first.interface();
    QDBusMessage call = QDBusMessage::createMethodCall(
        isOnBus ? serviceName() : QString(), objectPath(), u"org.freedesktop.Application"_s,
        documents.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!documents.isEmpty()) {
        QStringList uris;
        for (const QString &document : documents)
            uris << QUrl::fromLocalFile(document).toString(QUrl::FullyEncoded);
        call << uris;
    }
    call << platformData;
    const QDBusMessage answer = m_first.call(call, QDBus::Block, answerTimeout);
    return answer.type() == QDBusMessage::ReplyMessage;
}

#include "SingleInstance.moc"

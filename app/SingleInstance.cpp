#include "app/SingleInstance.h"

#include "platform/ui/Application.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QUrl>
#include <QVariantMap>

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

/// What the desktop needs to let the window come forward although another has the focus.
void takeActivationToken(const QVariantMap &platformData)
{
    const QByteArray token = platformData.value(u"activation-token"_s).toString().toUtf8();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token);
}

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
        takeActivationToken(platform_data);
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
{ }

SingleInstance::Role SingleInstance::claim()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Alone;
    // The object first: from the moment the name is ours, anybody may call.
    new ApplicationInterface(this, m_application);
    if (!bus.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors))
        return Alone;
    const auto reply =
        bus.interface()->registerService(serviceName(), QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid())
        return Alone;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? First : Second;
}

bool SingleInstance::passOn(const QStringList &documents)
{
    const QVariantMap platformData{
        {u"activation-token"_s, qEnvironmentVariable("XDG_ACTIVATION_TOKEN")},
        {u"desktop-startup-id"_s, qEnvironmentVariable("DESKTOP_STARTUP_ID")},
    };
    QDBusMessage call = QDBusMessage::createMethodCall(
        serviceName(), objectPath(), u"org.freedesktop.Application"_s,
        documents.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!documents.isEmpty()) {
        QStringList uris;
        for (const QString &document : documents)
            uris << QUrl::fromLocalFile(document).toString(QUrl::FullyEncoded);
        call << uris;
    }
    call << platformData;
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, answerTimeout);
    return answer.type() == QDBusMessage::ReplyMessage;
}

#include "SingleInstance.moc"

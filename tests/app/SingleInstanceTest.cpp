#include "app/SingleInstance.h"
#include "platform/ui/Application.h"
#include "platform/ui/ApplicationDelegate.h"
#include "tests/support/TestMain.h"

#include <QDBusMessage>

namespace {

constexpr const char *tokenVariable = "XDG_ACTIVATION_TOKEN";

/// The token that the window would come forward with, of each time that it is asked to.
class Reopened : public QObject, public ApplicationDelegate
{
    Q_OBJECT
    Q_INTERFACES(ApplicationDelegate)

public:
    void applicationDidFinishLaunching() override { }
    bool applicationShouldHandleReopen(QObject *, bool) override
    {
        tokens << qgetenv(tokenVariable);
        return true;
    }
    bool applicationOpenFile(QObject *, const QString &) override { return true; }
    void applicationWillTerminate() override { }

    QByteArrayList tokens;
};

/// Without a session bus.
struct Instances : testing::Test
{
    Instances()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(nowhere));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        qputenv("DISPLAY", ":a/b 1");
        setApplicationDelegate(&reopened);
    }
    ~Instances() override { setApplicationDelegate(nullptr); }

    QTemporaryDir runtime;
    const QString nowhere = runtime.filePath(u"nowhere"_s);
    const QString socket = runtime.filePath(u"solvane-%3Aa%2Fb%201"_s);
    Application &application = *static_cast<Application *>(qApp);
    Reopened reopened;
};

} // namespace

TEST_F(Instances, AreOneForEachDesktopAndRuntimeFolder)
{
    makeFile(socket, "left behind by something else");
    auto first = std::make_unique<SingleInstance>(application);
    EXPECT_EQ(first->claim(), SingleInstance::Alone) << "what is no socket is left alone";
    ASSERT_TRUE(QFile::remove(socket));
    EXPECT_EQ(first->claim(), SingleInstance::First);
    SingleInstance second(application);
    EXPECT_EQ(second.claim(), SingleInstance::Second);
    onThread([&] { EXPECT_TRUE(second.passOn({})); });
    onThread([&] { EXPECT_TRUE(second.passOn({u"/a document"_s})); });
    EXPECT_EQ(reopened.tokens.size(), 2);
    qputenv("DISPLAY", ":2");
    EXPECT_EQ(SingleInstance(application).claim(), SingleInstance::First);
    qputenv("DISPLAY", ":a/b 1");
    first.reset();
    EXPECT_EQ(SingleInstance(application).claim(), SingleInstance::First);
    for (const QFile::Permissions others : {QFile::ReadGroup, QFile::WriteOther}) {
        QFile::setPermissions(runtime.path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | others);
        SingleInstance elsewhere(application);
        elsewhere.claim();
        EXPECT_FALSE(QFile::exists(socket)) << "others may reach into the folder";
    }
}

TEST_F(Instances, TakeNoTokenThatKeepsProgramsFromStarting)
{
    SingleInstance first(application);
    ASSERT_EQ(first.claim(), SingleInstance::First);
    for (const auto &[token, taken] :
         {std::pair{QString(131072, u'x'), ""},
          {u"a\nb"_s, ""},
          {u"ü"_s, ""},
          {u"panel/program/7-0-host_TIME12"_s, "panel/program/7-0-host_TIME12"}}) {
        onThread([&, token = token] {
            QDBusConnection launch = QDBusConnection::connectToPeer(
                u"unix:path="_s + QString(socket).replace(u'%', u"%25"_s), u"launch"_s);
            QDBusMessage call = QDBusMessage::createMethodCall(
                {}, u"/com/solvane/Solvane"_s, u"org.freedesktop.Application"_s, u"Activate"_s);
            call << QVariantMap{{u"activation-token"_s, token}};
            EXPECT_EQ(launch.call(call).type(), QDBusMessage::ReplyMessage);
            QDBusConnection::disconnectFromPeer(u"launch"_s);
        });
        EXPECT_EQ(reopened.tokens.takeLast(), QByteArray(taken));
        EXPECT_FALSE(qEnvironmentVariableIsSet(tokenVariable)) << "is nobody else's";
    }
}

int main(int argc, char **argv)
{
    return testMain<Application>(argc, argv);
}

#include "SingleInstanceTest.moc"

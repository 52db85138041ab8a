#include "app/ReducedMotion.h"
#include "platform/ui/HostLook.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QStyle>

namespace {

/// What a desktop's portal answers; knows one setting.
class Portal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    QString group, key;
    QVariant value;

public Q_SLOTS:
    QDBusVariant Read(const QString &wantedGroup, const QString &wantedKey)
    {
        if (wantedGroup == group && wantedKey == key)
            return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
        sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
        return {};
    }
};

bool isReduced()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}

} // namespace

TEST(ReducedMotion, AsksTheDesktopsPortal)
{
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    ASSERT_TRUE(bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readLine().trimmed());
    QDBusConnection desktop = QDBusConnection::connectToBus(
        qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), u"desktop"_s);
    Portal portal;
    ASSERT_TRUE(desktop.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                       QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(desktop.registerService(u"org.freedesktop.portal.Desktop"_s));
    HostLook::apply();

    const std::tuple<const char *, const char *, QVariant, QVariant> cases[] = {
        {"org.gnome.desktop.interface", "enable-animations", false, true},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", u"0"_s, u"1"_s}};
    for (const auto &[group, key, asReduced, asUsual] : cases) {
        SCOPED_TRACE(group);
        portal.group = QString::fromLatin1(group);
        portal.key = QString::fromLatin1(key);
        portal.value = asReduced;
        const ReducedMotion motion(nullptr);
        EXPECT_FALSE(isReduced());
        EXPECT_TRUE(QTest::qWaitFor(isReduced)) << "as it is at the start";
        for (const bool reduced : {false, true, false}) {
            portal.value = reduced ? asReduced : asUsual;
            Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
            EXPECT_SOON(isReduced() == reduced) << reduced;
        }
    }
    QDBusConnection::disconnectFromBus(u"desktop"_s);
    bus.terminate();
    bus.waitForFinished();
}

#include "ReducedMotionTest.moc"

#include "app/TrayWatch.h"

#include "platform/ui/X11.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QScopedPointer>

using namespace Qt::StringLiterals;

namespace {

QString watcherName()
{
    return u"org.kde.StatusNotifierWatcher"_s;
}

QString watcherPath()
{
    return u"/StatusNotifierWatcher"_s;
}

} // namespace

void TrayWatch::begin()
{
    watchBus();
    watchDisplay();
}

void TrayWatch::found()
{
    if (!m_appeared)
        return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    std::exchange(m_appeared, nullptr)();
}

void TrayWatch::watchBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto *names = new QDBusServiceWatcher(watcherName(), bus,
                                          QDBusServiceWatcher::WatchForRegistration, this);
    connect(names, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::askBus);
    bus.connect(watcherName(), watcherPath(), watcherName(), u"StatusNotifierHostRegistered"_s,
                this, SLOT(askBus()));
    askBus();
}

/// The watcher alone shows nothing: it knows whether there is a host that does.
void TrayWatch::askBus()
{
    if (!m_appeared)
        return;
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherName(), watcherPath(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << watcherName() << u"IsStatusNotifierHostRegistered"_s;
    question.setAutoStartService(false);
    auto *answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid() && reply.value().variant().toBool())
            found();
    });
}

void TrayWatch::watchDisplay()
{
    const auto display = X11::display();
    if (!display || !m_appeared)
        return;
    m_managerAtom = X11::atom(*display, "MANAGER");
    m_trayAtom = X11::atom(*display, "_NET_SYSTEM_TRAY_S" + QByteArray::number(display->screen));
    // Before the look at what is there, so that nothing falls between the two.
    QCoreApplication::instance()->installNativeEventFilter(this);
    const auto request = xcb_get_selection_owner(display->connection, m_trayAtom);
    const QScopedPointer<xcb_get_selection_owner_reply_t, QScopedPointerPodDeleter> reply(
        xcb_get_selection_owner_reply(display->connection, request, nullptr));
    if (reply && reply->owner != XCB_WINDOW_NONE)
        found();
}

/// A new owner of the tray's selection tells all clients by the root window.
bool TrayWatch::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    constexpr int sentFlag = 0x80;
    if (type != "xcb_generic_event_t" || (event->response_type & ~sentFlag) != XCB_CLIENT_MESSAGE)
        return false;
    const auto *told = static_cast<const xcb_client_message_event_t *>(message);
    if (told->type == m_managerAtom && told->data.data32[1] == m_trayAtom) {
        // The toolkit is to have seen the message first.
        QMetaObject::invokeMethod(this, &TrayWatch::found, Qt::QueuedConnection);
    }
    return false;
}

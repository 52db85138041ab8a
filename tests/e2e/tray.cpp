// A panel's tray, for as long as it runs: prints a line for each icon that comes to stand in it.
//
//     tray notifier     on the session bus (StatusNotifierItem)
//     tray embedded     on the display (System Tray Protocol)

#include <QCoreApplication>
#include <QDBusConnection>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

#include <xcb/xcb.h>

class Notifier : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost)

public:
    bool hasHost = true;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &) { std::puts("icon"); }
};

namespace {

xcb_atom_t atom(xcb_connection_t *display, std::string_view name)
{
    const auto request = xcb_intern_atom(display, 0, std::uint16_t(name.size()), name.data());
    return xcb_intern_atom_reply(display, request, nullptr)->atom;
}

int embed()
{
    xcb_connection_t *display = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
    const xcb_window_t tray = xcb_generate_id(display);
    xcb_create_window(display, 0, tray, root, 0, 0, 24, 24, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, 0, 0,
                      nullptr);
    const xcb_atom_t selection = atom(display, "_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(display, tray, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t told{};
    told.response_type = XCB_CLIENT_MESSAGE;
    told.format = 32;
    told.window = root;
    told.type = atom(display, "MANAGER");
    told.data.data32[1] = selection;
    told.data.data32[2] = tray;
    xcb_send_event(display, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&told));
    xcb_flush(display);
    const xcb_atom_t request = atom(display, "_NET_SYSTEM_TRAY_OPCODE");
    while (xcb_generic_event_t *event = xcb_wait_for_event(display)) {
        if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE
            && reinterpret_cast<xcb_client_message_event_t *>(event)->type == request)
            std::puts("icon");
        std::free(event);
    }
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (argc > 1 && std::string_view(argv[1]) == "embedded")
        return embed();
    const QCoreApplication application(argc, argv);
    Notifier notifier;
    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool isThere = bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), &notifier,
                                            QDBusConnection::ExportAllContents)
        && bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    return isThere ? QCoreApplication::exec() : 1;
}

#include "tray.moc"

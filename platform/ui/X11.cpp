#include "platform/ui/X11.h"

#include <QGuiApplication>
#include <QScopedPointer>
#include <QWidget>

#include <cstdlib>

namespace X11 {

namespace {

constexpr quint32 everyDesktop = 0xffffffff;

std::optional<quint32> cardinal(const Display &display, xcb_window_t window, const char *name)
{
    const auto request = xcb_get_property(display.connection, 0, window, atom(display, name),
                                          XCB_ATOM_CARDINAL, 0, 1);
    const QScopedPointer<xcb_get_property_reply_t, QScopedPointerPodDeleter> reply(
        xcb_get_property_reply(display.connection, request, nullptr));
    if (!reply || xcb_get_property_value_length(reply.data()) != sizeof(quint32))
        return std::nullopt;
    return *static_cast<quint32 *>(xcb_get_property_value(reply.data()));
}

} // namespace

std::optional<Display> display()
{
    const auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = native ? native->connection() : nullptr;
    if (!connection || xcb_connection_has_error(connection))
        return std::nullopt;
    int screen = 0;
    char *host = nullptr;
    int number = 0;
    if (xcb_parse_display(nullptr, &host, &number, &screen))
        std::free(host);
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screen && roots.rem > 1; ++i)
        xcb_screen_next(&roots);
    return Display{connection, screen, roots.data->root};
}

xcb_atom_t atom(const Display &display, const QByteArray &name)
{
    const auto request =
        xcb_intern_atom(display.connection, 0, quint16(name.size()), name.constData());
    const QScopedPointer<xcb_intern_atom_reply_t, QScopedPointerPodDeleter> reply(
        xcb_intern_atom_reply(display.connection, request, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void bringToCurrentDesktop(const QWidget &window)
{
    const auto here = display();
    const auto id = xcb_window_t(window.internalWinId());
    if (!here || id == 0)
        return;
    const auto seen = cardinal(*here, here->root, "_NET_CURRENT_DESKTOP");
    const auto own = cardinal(*here, id, "_NET_WM_DESKTOP");
    // One that is not shown has none; it comes to the one that is seen by itself.
    if (!seen || !own || own == seen || own == everyDesktop)
        return;
    constexpr quint32 byApplication = 1;
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = id;
    request.type = atom(*here, "_NET_WM_DESKTOP");
    request.data.data32[0] = *seen;
    request.data.data32[1] = byApplication;
    xcb_send_event(here->connection, 0, here->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&request));
    xcb_flush(here->connection);
}

} // namespace X11

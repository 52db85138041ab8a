#pragma once

#include <QByteArray>

#include <optional>

#include <xcb/xcb.h>

class QWidget;

/// What the toolkit does not offer of an X11 display. Main thread.
namespace X11 {

struct Display
{
    xcb_connection_t *connection; ///< the toolkit's
    int screen;
    xcb_window_t root;
};

/// Nothing where the program does not run on X11.
std::optional<Display> display();

xcb_atom_t atom(const Display &display, const QByteArray &name);

/// Has the window manager bring a window that is on another virtual desktop to the one that is seen
/// (EWMH, _NET_WM_DESKTOP). To be activated there would only light up an entry in the panel.
/// Elsewhere than on X11 nothing: there the activation itself does it.
void bringToCurrentDesktop(const QWidget &window);

} // namespace X11

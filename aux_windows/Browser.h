#pragma once

#include <QString>

/// The user's own web browser. Main thread.
namespace Browser {

/// Opens the address. Where no browser could be opened, an alert of the host says so and names the
/// page, so that it can be reached by hand: at once, or as soon as the desktop has found out. There
/// is one such alert at a time, however many addresses are asked for.
///
/// An address that is no URL (RFC 3986) opens nothing and tells nobody but the system log. One with
/// letters beyond ASCII (RFC 3987) counts as one: the name of a machine may well have them.
void open(const QString &address);

} // namespace Browser

#pragma once

class QPalette;

/// The host's own light look, whatever the desktop's palette is, so that white backgrounds stay
/// readable on a dark desktop.
namespace HostLook {

QPalette palette();
/// Needs the application object.
void apply();

} // namespace HostLook

#pragma once

class QPalette;

/// The host's own light look, whatever the desktop's palette is, so that white backgrounds stay
/// readable on a dark desktop.
namespace HostLook {

QPalette palette();
/// Needs the application object.
void apply();

/// Whether the desktop asks for as little motion as possible: the style's animations then take no
/// time (QStyle::SH_Widget_Animation_Duration is 0). Every widget hears of a change as of a changed
/// style. Not before apply().
void setReducedMotion(bool reduced);

} // namespace HostLook

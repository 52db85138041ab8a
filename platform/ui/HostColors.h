#pragma once

#include <QColor>

/// The colours of the host's light look. Text stands out from its ground by at least 4.5 : 1,
/// lines, rings and what has to be told from its surroundings by 3 : 1 (WCAG 2.1, 1.4.3
/// and 1.4.11); a test computes it for every pair. The sidebar's ground and its badges have colours
/// of their own.
namespace HostColors {

inline constexpr QColor ground(0xff, 0xff, 0xff);
inline constexpr QColor otherRow(0xf4, 0xf7, 0xfa); ///< every second row of a table
inline constexpr QColor toolTip(0xff, 0xff, 0xf0);
inline constexpr QColor text(0x1f, 0x29, 0x33);
inline constexpr QColor quietText(0x66, 0x71, 0x7c); ///< disabled, or in place of a text
inline constexpr QColor linkText(0x1a, 0x66, 0xa8);
inline constexpr QColor accent(0x27, 0x70, 0xae); ///< selections and the ring of the keyboard
inline constexpr QColor otherSelection(0x60, 0x72, 0x98); ///< while the keyboard is elsewhere
inline constexpr QColor lightText(0xff, 0xff, 0xff);      ///< on selections and buttons

/// What the style makes the bodies of buttons from; it lightens them.
inline constexpr QColor button(0x12, 0x42, 0x6e);
inline constexpr QColor disabledButton(0x4a, 0x52, 0x5b);
inline constexpr QColor edge(0x7f, 0x8a, 0x95);   ///< around fields, boxes and panels
inline constexpr QColor slider(0xcf, 0xd6, 0xdd); ///< within its edge
inline constexpr QColor thumb(0x66, 0x71, 0x7c);  ///< of scroll bars, the sidebar's too

inline constexpr QColor sidebarHeading(0x4a, 0x56, 0x60);
inline constexpr QColor disclosure(0x3c, 0x46, 0x50);
inline constexpr QColor spinner(0x0a, 0x0e, 0x12); ///< on a selected row, too

/// The Touch Bar is dark.
inline constexpr QColor stripGround(0x20, 0x25, 0x2b);
inline constexpr QColor segment(0x3d, 0x45, 0x4e);
inline constexpr QColor segmentUnderMouse(0x4b, 0x55, 0x60);
inline constexpr QColor segmentPressed(0x5f, 0x6b, 0x78);
inline constexpr QColor segmentEdge(0x8f, 0x9a, 0xa5);
inline constexpr QColor segmentRing(0x7c, 0xc0, 0xf4);

} // namespace HostColors

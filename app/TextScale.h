#pragma once

#include <QSize>

#include <functional>
#include <memory>

class Application;

/// The window grows as one with the desktop's text. Where the desktop says so by its resolution,
/// the toolkit does that; the size of the desktop's font it would give to some texts alone, and
/// leave the sidebar, whose measures are fixed, behind.
namespace TextScale {

constexpr double largestText = 11;        ///< points; up to it everything has its place as designed
constexpr QSize leastWindow = {760, 480}; ///< points; the main window's least size

/// By what everything is enlarged for texts of that many points: 1 up to the largest text and a
/// little beyond, and never so much that the window at its least would not fit into the room.
/// @param textSize 0 or less where it is not known.
double factorFor(double textSize, const QSize &room);

/// The application object that `make` gives for the arguments. For large texts it is made a second
/// time, since the toolkit reads by what it enlarges everything when the object is made. The
/// application's font is then the largest that is laid out for; enlarged it has the desktop's size,
/// as far as the screen has room.
std::unique_ptr<Application>
makeApplication(int &argc, char **argv,
                const std::function<std::unique_ptr<Application>(int &, char **)> &make);

} // namespace TextScale

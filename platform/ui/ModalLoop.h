#pragma once

class QWidget;

/// Application-modal loops: the program goes on, but only one window takes mouse and keyboard.
/// Main thread.
namespace ModalLoop {

/// Runs the main loop until stopModal(), and answers true then. Answers false when the window is
/// closed or deleted, when the application quits, and at once when there is no window.
///
/// The window, what it has opened itself (menus, dialogs) and dialogs in front take input, anything
/// else does not; the Quit command's key always works. A window that is part of another one, such
/// as the view of a sheet, is meant by itself. Loops nest.
bool runModalForWindow(QWidget *window);

/// Stops the innermost loop, and those around it that run for the same window. Nothing happens when
/// none runs.
void stopModal();

bool isRunning();

} // namespace ModalLoop

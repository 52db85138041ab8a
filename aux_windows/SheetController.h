#pragma once

#include "platform/ui/WindowController.h"
#include "plugin_host/mndCore.h"

/// A window that the host shows as a sheet over the main window. Main thread.
class SheetController : public WindowController
{
    Q_OBJECT

protected:
    using WindowController::WindowController;

    /// The host, which is the application's delegate; null without one.
    static mndCore *core();

    /// Asks the host to end the sheet. Asked again before that has come about, as by a double
    /// click, it does nothing: the host counts every request.
    void endSheet();
    /// The sheet was asked to end and has not yet.
    bool isEnding() const { return m_isEnding; }
    /// Loads the file as WindowController does, with its texts on the side where the desktop's
    /// language begins, whatever language they turn out to be in.
    bool loadSheet(const QString &name);
    /// The key Escape does, while the window shows, what the function does.
    void onEscape(const std::function<void()> &act);
    /// As tall as its texts need at the window's width, and at least as tall as designed.
    void fitToTexts();

private:
    int m_designedHeight = 0;
    bool m_isEnding = false;
};

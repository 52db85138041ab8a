#pragma once

#include "platform/ui/WindowController.h"

/// The preferences sheet.
class mndPrefs : public WindowController
{
    Q_OBJECT

public:
    mndPrefs();

    /// Shows the sheet over the main window.
    Q_INVOKABLE void show();
    /// Ends it. Changes were stored as they were made.
    Q_INVOKABLE void hide();
};
